// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_session.h"

#include <string_view>
#include <utility>

#include "platform/sqlite/sqlite_file_check.h"

namespace vantrell {

namespace {

constexpr std::chrono::milliseconds kRetryInterval(50);

struct StatementCloser {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementCloser>;

bool isLocked(int code) { return (code & 0xff) == SQLITE_BUSY || (code & 0xff) == SQLITE_LOCKED; }

std::string bytesOf(const void* bytes, int size) {
    return size > 0 ? std::string(static_cast<const char*>(bytes), static_cast<std::size_t>(size)) : std::string();
}

DatabaseValue columnOf(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
        case SQLITE_INTEGER:
            return std::int64_t{sqlite3_column_int64(statement, column)};
        case SQLITE_FLOAT:
            return sqlite3_column_double(statement, column);
        case SQLITE_BLOB: {
            const void* bytes = sqlite3_column_blob(statement, column);
            return Blob{bytesOf(bytes, sqlite3_column_bytes(statement, column))};
        }
        case SQLITE_TEXT: {
            const void* text = sqlite3_column_text(statement, column);
            return bytesOf(text, sqlite3_column_bytes(statement, column));
        }
        default:
            return std::monostate{};
    }
}

struct Binder {
    sqlite3_stmt* statement;
    int index;

    int operator()(std::monostate) const { return sqlite3_bind_null(statement, index); }
    int operator()(bool value) const { return sqlite3_bind_int(statement, index, value ? 1 : 0); }
    int operator()(std::int64_t value) const { return sqlite3_bind_int64(statement, index, value); }
    int operator()(double value) const { return sqlite3_bind_double(statement, index, value); }
    // The parameters outlive the statement, so null stands for SQLITE_STATIC.
    int operator()(const std::string& value) const {
        return sqlite3_bind_text64(statement, index, value.data(), value.size(), nullptr, SQLITE_UTF8);
    }
    int operator()(const Blob& value) const {
        return sqlite3_bind_blob64(statement, index, value.bytes.data(), value.bytes.size(), nullptr);
    }
};

int bindAll(sqlite3_stmt* statement, const std::vector<DatabaseValue>& parameters) {
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const int code = std::visit(Binder{statement, static_cast<int>(i) + 1}, parameters[i]);
        if (code != SQLITE_OK) return code;
    }
    return SQLITE_OK;
}

int readRows(sqlite3_stmt* statement, SqliteResult& result) {
    const int columns = sqlite3_column_count(statement);
    for (int i = 0; i < columns; ++i) result.columns.emplace_back(sqlite3_column_name(statement, i));
    int code = sqlite3_step(statement);
    for (; code == SQLITE_ROW; code = sqlite3_step(statement)) {
        std::vector<DatabaseValue>& row = result.rows.emplace_back();
        for (int i = 0; i < columns; ++i) row.push_back(columnOf(statement, i));
    }
    return code == SQLITE_DONE ? SQLITE_OK : code;
}

std::int32_t numberOf(int code, std::string_view words) {
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return kTimeoutExpired;
        case SQLITE_PERM:
        case SQLITE_READONLY:
            return kPermissionDenied;
        case SQLITE_CONSTRAINT:
            return kIntegrityViolation;
        case SQLITE_MISMATCH:
            return kErrorsOccurred;
        case SQLITE_ERROR:
            return words.substr(0, 13) == "no such table" ? kTableDoesNotExist : kErrorsInCommand;
        default:
            return kUnspecifiedError;
    }
}

std::string meaningOf(int code, const Path& file) {
    switch (code & 0xff) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return "The file " + file + " is in use by another program: ";
        case SQLITE_PERM:
        case SQLITE_READONLY:
            return "The file " + file + " may not be written: ";
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return "The file " + file + " is damaged: ";
        default:
            return "The file " + file + ": ";
    }
}

}  // namespace

DatabaseError SqliteSession::errorOf(int code) const {
    const std::string words = sqlite3_errmsg(handle_);
    return {numberOf(code, words), meaningOf(code, file_) + words + "."};
}

void SqliteSession::close() {
    rollback();
    sqlite3_close_v2(std::exchange(handle_, nullptr));
}

void SqliteSession::rollback() {
    if (!isInTransaction()) return;
    // Without success the journal is still there, and whoever opens the file next rolls it back.
    sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
}

DatabaseError SqliteSession::openFile() {
    if (auto error = checkFileBeforeOpening(file_)) return error;
    // A relative name such as ":memory:" is no file's name for SQLite, "./:memory:" is.
    const std::string name = file_.front() == kPathSeparator ? file_ : "./" + file_;
    const int code = sqlite3_open_v2(name.c_str(), &handle_, SQLITE_OPEN_READWRITE, nullptr);
    if (handle_ == nullptr) return {kUnspecifiedError, "There is not enough memory to open the file " + file_ + "."};
    if (code != SQLITE_OK) return openingError(handle_, file_);
    // What a foreign schema calls may not have effects of its own.
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return checkFormat(handle_, file_);
}

Task<DatabaseError> SqliteSession::open(Path file) {
    file_ = std::move(file);
    DatabaseError error = openFile();
    // Reads the file for the first time: rolls back what a crash left, and meets others' locks.
    if (!error) error = (co_await run("SELECT count(*) FROM sqlite_master", {})).error;
    // EXTRA: a commit has reached stable storage with its folder. Deleted passwords are overwritten.
    if (!error) error = (co_await run("PRAGMA synchronous = EXTRA", {})).error;
    if (!error) error = (co_await run("PRAGMA secure_delete = ON", {})).error;
    if (error) close();
    co_return error;
}

int SqliteSession::runOnce(const std::string& sql, const std::vector<DatabaseValue>& parameters, SqliteResult& result) {
    result = {};
    sqlite3_stmt* prepared = nullptr;
    int code = sqlite3_prepare_v2(handle_, sql.c_str(), static_cast<int>(sql.size()) + 1, &prepared, nullptr);
    const Statement statement(prepared);
    if (code == SQLITE_OK) code = bindAll(prepared, parameters);
    if (code == SQLITE_OK && prepared != nullptr) code = readRows(prepared, result);
    if (code == SQLITE_OK) {
        result.changes = sqlite3_changes(handle_);
    } else {
        result = {};
        result.error = errorOf(code);
    }
    return code;
}

Task<SqliteResult> SqliteSession::run(std::string sql, std::vector<DatabaseValue> parameters) {
    SqliteResult result;
    co_await loop_.breathe();
    // Tries are counted, not the time: a busy event loop makes us more patient, never less.
    for (auto waited = std::chrono::milliseconds::zero();; waited += kRetryInterval) {
        if (!isOpen()) {
            result.error = {adErrObjectClosed, "Operation is not allowed when the object is closed."};
            break;
        }
        if (!isLocked(runOnce(sql, parameters, result)) || waited >= patience_) break;
        co_await loop_.after(kRetryInterval);
    }
    co_return result;
}

}  // namespace vantrell
