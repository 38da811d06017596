// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_connection.h"

#include <string_view>
#include <utility>

#include "platform/sqlite/sqlite_recordset.h"

namespace vantrell {

namespace {

constexpr std::string_view kProvider = "Provider=Microsoft.Jet.OLEDB.4.0;data source=";
constexpr std::string_view kSecurityClause = ";Persist Security Info=False";

/// A path may hold a semicolon, so what follows it is cut off from the end.
Path fileNamedBy(std::string_view connectionString) {
    if (connectionString.substr(0, kProvider.size()) != kProvider) return {};
    std::string_view path = connectionString.substr(kProvider.size());
    while (path.ends_with(kSecurityClause)) path.remove_suffix(kSecurityClause.size());
    return Path(path);
}

DatabaseError closedError() { return {adErrObjectClosed, "Operation is not allowed when the object is closed."}; }

}  // namespace

void SqliteConnection::setCommandTimeout(int seconds) { commandTimeout_ = std::chrono::seconds(seconds); }

Task<DatabaseError> SqliteConnection::open(std::string connectionString, std::string, std::string, int) {
    if (session_) co_return DatabaseError{adErrObjectOpen, "Operation is not allowed when the object is open."};
    Path file = fileNamedBy(connectionString);
    if (file.empty()) {
        co_return DatabaseError{adErrProviderNotFound,
                                "Provider cannot be found: the connection names no database of a known type."};
    }
    const auto session = std::make_shared<SqliteSession>(loop_);
    session->setPatience(commandTimeout_);
    DatabaseError error = co_await session->open(std::move(file));
    if (!error) session_ = session;
    co_return error;
}

ObjectStateEnum SqliteConnection::state() const { return session_ ? adStateOpen : adStateClosed; }

void SqliteConnection::close() {
    if (session_) session_->close();
    session_.reset();
}

Task<ExecuteResult> SqliteConnection::execute(std::string commandText, int) {
    ExecuteResult executed;
    const auto session = session_;
    if (!session) {
        executed.error = closedError();
        co_return executed;
    }
    SqliteResult result = co_await session->run(std::move(commandText), {});
    executed.error = result.error;
    executed.recordsAffected = result.changes;
    if (!executed.error) executed.recordset = std::make_shared<SqliteRecordset>(session, std::move(result));
    co_return executed;
}

Task<DatabaseError> SqliteConnection::runOpen(std::string sql) {
    const auto session = session_;
    if (!session) co_return closedError();
    co_return (co_await session->run(std::move(sql), {})).error;
}

Task<DatabaseError> SqliteConnection::beginTrans() { return runOpen("BEGIN IMMEDIATE"); }

Task<DatabaseError> SqliteConnection::commitTrans() { return runOpen("COMMIT"); }

void SqliteConnection::rollbackTrans() {
    if (session_) session_->rollback();
}

}  // namespace vantrell
