// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/path.h"
#include "platform/database.h"
#include "platform/event_loop.h"

namespace vantrell {

struct SqliteResult {
    std::vector<std::string> columns;
    std::vector<std::vector<DatabaseValue>> rows;
    std::int64_t changes = 0;  ///< records that the statement inserted, changed or deleted
    DatabaseError error;
};

/// One open SQLite file (https://www.sqlite.org/c3ref/intro.html). No statement stays open between two calls, so
/// nothing is locked between them unless a transaction is open.
///
/// Every coroutine's caller holds a shared pointer to the session until the coroutine has ended.
class SqliteSession {
public:
    explicit SqliteSession(EventLoop& loop) : loop_(loop) {}
    SqliteSession(const SqliteSession&) = delete;
    SqliteSession& operator=(const SqliteSession&) = delete;
    ~SqliteSession() { close(); }

    void setPatience(std::chrono::seconds patience) { patience_ = patience; }
    Task<DatabaseError> open(Path file);
    [[nodiscard]] bool isOpen() const { return handle_ != nullptr; }
    void close();

    /// Runs one statement with its parameters and reads all its rows at one go. While another program holds the file
    /// locked it is tried again, giving the event loop its turns.
    Task<SqliteResult> run(std::string sql, std::vector<DatabaseValue> parameters);

    [[nodiscard]] bool isInTransaction() const { return handle_ != nullptr && sqlite3_get_autocommit(handle_) == 0; }
    void rollback();

private:
    [[nodiscard]] DatabaseError openFile();
    [[nodiscard]] int runOnce(const std::string& sql, const std::vector<DatabaseValue>& parameters,
                              SqliteResult& result);
    [[nodiscard]] DatabaseError errorOf(int code) const;

    EventLoop& loop_;
    std::chrono::seconds patience_{30};
    Path file_;
    sqlite3* handle_ = nullptr;
};

/// Takes back what a transaction did unless it was committed: also when the task that worked in it is destroyed.
class SqliteRollbackGuard {
public:
    explicit SqliteRollbackGuard(std::shared_ptr<SqliteSession> session) : session_(std::move(session)) {}
    SqliteRollbackGuard(const SqliteRollbackGuard&) = delete;
    SqliteRollbackGuard& operator=(const SqliteRollbackGuard&) = delete;
    ~SqliteRollbackGuard() {
        if (session_) session_->rollback();
    }
    void committed() { session_.reset(); }

private:
    std::shared_ptr<SqliteSession> session_;
};

}  // namespace vantrell
