// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "platform/database.h"
#include "platform/sqlite/sqlite_session.h"

namespace vantrell {

class SqliteConnection final : public Connection {
public:
    explicit SqliteConnection(EventLoop& loop) : loop_(loop) {}

    // There is one mode, one place for cursors, and opening waits like every statement.
    void setMode(ConnectModeEnum) override {}
    void setConnectionTimeout(int) override {}
    void setCursorLocation(CursorLocationEnum) override {}
    void setCommandTimeout(int seconds) override;

    Task<DatabaseError> open(std::string connectionString, std::string userId, std::string password,
                             int options) override;
    Task<ExecuteResult> execute(std::string commandText, int options) override;
    [[nodiscard]] ObjectStateEnum state() const override;
    void close() override;

    Task<DatabaseError> beginTrans() override;
    Task<DatabaseError> commitTrans() override;
    void rollbackTrans() override;

    /// Null while it is closed.
    [[nodiscard]] std::shared_ptr<SqliteSession> session() const { return session_; }

private:
    Task<DatabaseError> runOpen(std::string sql);

    EventLoop& loop_;
    std::chrono::seconds commandTimeout_{30};
    std::shared_ptr<SqliteSession> session_;
};

}  // namespace vantrell
