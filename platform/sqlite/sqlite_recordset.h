// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/database.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/sqlite/sqlite_table.h"

namespace vantrell {

/// All rows lie in memory, each with its key; changes are written to the table one by one.
class SqliteRecordset final : public Recordset {
public:
    SqliteRecordset() = default;
    /// The open, read-only result of a command.
    SqliteRecordset(const std::shared_ptr<SqliteSession>& session, SqliteResult result);

    void setActiveConnection(std::shared_ptr<Connection> connection) override;
    void setSource(std::string query) override { source_ = std::move(query); }
    // All cursors are static ones in our own memory.
    void setCursorType(CursorTypeEnum) override {}
    void setCursorLocation(CursorLocationEnum) override {}
    void setLockType(LockTypeEnum type) override { lockType_ = type; }

    Task<DatabaseError> open() override;
    Task<DatabaseError> requery(int options) override;
    [[nodiscard]] ObjectStateEnum state() const override;
    void close() override;

    [[nodiscard]] std::int64_t recordCount() const override;
    [[nodiscard]] bool eof() const override;
    void moveFirst() override;
    void moveNext() override;

    [[nodiscard]] FieldResult value(std::string_view field) const override;
    DatabaseError setValue(std::string_view field, DatabaseValue value) override;
    DatabaseError addNew() override;
    Task<DatabaseError> update() override;
    Task<DatabaseError> deleteRecord(AffectEnum affected) override;

private:
    struct Row {
        std::vector<DatabaseValue> key;
        std::vector<DatabaseValue> values;
    };
    struct Change {
        std::size_t column;
        DatabaseValue value;
    };
    struct Statement {
        std::string sql;
        std::vector<DatabaseValue> parameters;
    };

    Task<DatabaseError> load();
    void take(SqliteResult result, std::size_t keyColumns);
    void dropChanges();
    [[nodiscard]] DatabaseError currentRecordError() const;
    [[nodiscard]] DatabaseError changeError() const;
    [[nodiscard]] std::optional<std::size_t> columnNamed(std::string_view name) const;
    [[nodiscard]] std::string keyCondition() const;
    [[nodiscard]] Statement insertStatement() const;
    [[nodiscard]] Statement updateStatement() const;
    [[nodiscard]] DatabaseError checkWritten(const SqliteResult& written) const;
    void takeWritten(const std::vector<DatabaseValue>& returned);
    /// Runs the statement in the transaction that is open, or in one of its own.
    Task<DatabaseError> write(std::shared_ptr<SqliteSession> session, Statement statement, bool returnsValues);

    std::weak_ptr<SqliteSession> session_;
    std::string source_;
    LockTypeEnum lockType_ = adLockReadOnly;
    SqliteTable table_;
    std::vector<std::string> columns_;
    std::vector<Row> rows_;
    std::vector<Change> changes_;
    std::size_t position_ = 0;
    bool isOpen_ = false;
    bool isDetached_ = false;
    bool isAdding_ = false;
    bool isOnDeleted_ = false;
};

}  // namespace vantrell
