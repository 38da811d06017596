// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_copier.h"

#include <sqlite3.h>

#include <memory>
#include <utility>

#include "platform/sqlite/sqlite_file_check.h"

namespace vantrell {

namespace {

// Far more than passwords can need, and little enough to be read at one go.
constexpr sqlite3_int64 kMostBytes = 64 << 20;
// Offsets of the two format versions in the file's head: 1 with a rollback journal, 2 with a write-ahead log, of which
// nothing is left in contents that were taken whole (https://www.sqlite.org/fileformat2.html, section 1.3.3).
constexpr std::size_t kWriteVersion = 18;
constexpr std::size_t kReadVersion = 19;
// What SQLite counts up and notes at each writing (of pages, and of the schema), in the head: no part of what a file
// holds.
struct Range {
    std::size_t begin;
    std::size_t size;
};
constexpr Range kWritingMarks[] = {{24, 4}, {40, 4}, {92, 8}};

struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
    void operator()(unsigned char* bytes) const { sqlite3_free(bytes); }
};
using Handle = std::unique_ptr<sqlite3, Closer>;
using Statement = std::unique_ptr<sqlite3_stmt, Closer>;

DatabaseFault faultOf(int code) {
    switch (code & 0xff) {
        case SQLITE_OK:
            return DatabaseFault::none;
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            return DatabaseFault::inUse;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            return DatabaseFault::notADatabase;
        default:
            return DatabaseFault::failed;
    }
}

Handle opened(const std::string& name, int flags, int& code) {
    sqlite3* handle = nullptr;
    code = sqlite3_open_v2(name.c_str(), &handle, flags, nullptr);
    Handle owned(handle);
    // What a foreign schema calls may not have effects of its own.
    if (handle != nullptr) sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return owned;
}

int run(const Handle& database, const char* sql) {
    return sqlite3_exec(database.get(), sql, nullptr, nullptr, nullptr);
}

/// The first reading undoes what a crash left, and meets the locks of others.
Handle openedFile(const Path& file, int& code) {
    if (checkFileBeforeOpening(file)) {
        code = SQLITE_CANTOPEN;
        return nullptr;
    }
    Handle database = opened(file, SQLITE_OPEN_READWRITE, code);
    if (code == SQLITE_OK) code = run(database, "SELECT count(*) FROM sqlite_master");
    return database;
}

DatabaseCopier::Contents wholeOf(const Handle& database) {
    sqlite3_int64 size = -1;
    sqlite3_serialize(database.get(), "main", &size, SQLITE_SERIALIZE_NOCOPY);
    if (size < 0 || size > kMostBytes) return {{}, DatabaseFault::failed};
    if (size == 0) return {};
    const std::unique_ptr<unsigned char, Closer> bytes(sqlite3_serialize(database.get(), "main", &size, 0));
    if (!bytes) return {{}, DatabaseFault::failed};
    const void* const first = bytes.get();
    std::string whole(static_cast<const char*>(first), static_cast<std::size_t>(size));
    for (const std::size_t version : {kWriteVersion, kReadVersion})
        if (whole.size() > version) whole[version] = 1;
    return {std::move(whole), DatabaseFault::none};
}

/// A database in memory that reads from `contents`, which outlive it.
Handle inMemory(const std::string& contents, int& code) {
    Handle database = opened(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, code);
    if (code != SQLITE_OK) return database;
    const auto size = static_cast<sqlite3_int64>(contents.size());
    // Only read, as the flag says.
    void* const bytes = const_cast<char*>(contents.data());
    code = sqlite3_deserialize(database.get(), "main", static_cast<unsigned char*>(bytes), size, size,
                               SQLITE_DESERIALIZE_READONLY);
    return database;
}

int copyPages(const Handle& from, const Handle& to) {
    sqlite3_backup* const copying = sqlite3_backup_init(to.get(), "main", from.get(), "main");
    if (copying == nullptr) return sqlite3_errcode(to.get());
    const int stepped = sqlite3_backup_step(copying, -1);
    // Undoes what is not complete.
    const int finished = sqlite3_backup_finish(copying);
    return stepped == SQLITE_DONE ? finished : stepped;
}

bool holdSame(std::string one, std::string other) {
    for (std::string* const contents : {&one, &other})
        for (const auto& [begin, size] : kWritingMarks)
            if (contents->size() >= begin + size) contents->replace(begin, size, size, '\0');
    return one == other;
}

// The lock is held until the connection is closed, so that what has been kept is what will be replaced. Copying wants
// to begin its own transaction.
int lockForGood(const Handle& database) {
    return run(database,
               "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE; SELECT count(*) FROM sqlite_master; COMMIT");
}

bool holdsNothing(const Handle& database) {
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database.get(), "SELECT 1 FROM sqlite_master", -1, &prepared, nullptr);
    const Statement query(prepared);
    return query && sqlite3_step(query.get()) == SQLITE_DONE;
}

DatabaseFault keepOld(const Handle& database, const std::string& replacement, const DatabaseCopier::Keep& keep) {
    if (holdsNothing(database)) return DatabaseFault::none;
    const DatabaseCopier::Contents old = wholeOf(database);
    if (old.fault != DatabaseFault::none || holdSame(old.bytes, replacement)) return old.fault;
    return keep(old.bytes) ? DatabaseFault::none : DatabaseFault::failed;
}

bool isUndamaged(const Handle& database) {
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database.get(), "PRAGMA integrity_check(1)", -1, &prepared, nullptr);
    const Statement check(prepared);
    if (!check || sqlite3_step(check.get()) != SQLITE_ROW) return false;
    const void* const answer = sqlite3_column_text(check.get(), 0);
    return answer != nullptr && std::string_view(static_cast<const char*>(answer)) == "ok";
}

bool hasColumn(const Handle& database, std::string_view table, const std::string& column) {
    constexpr char kQuery[] =
        "SELECT 1 FROM sqlite_master AS t JOIN pragma_table_info(t.name) AS c"
        " WHERE t.type = 'table' AND t.name = ?1 COLLATE NOCASE AND c.name = ?2 COLLATE NOCASE";
    sqlite3_stmt* prepared = nullptr;
    sqlite3_prepare_v2(database.get(), kQuery, -1, &prepared, nullptr);
    const Statement query(prepared);
    if (!query) return false;
    // Both texts outlive the statement, so null stands for SQLITE_STATIC.
    sqlite3_bind_text(query.get(), 1, table.data(), static_cast<int>(table.size()), nullptr);
    sqlite3_bind_text(query.get(), 2, column.data(), static_cast<int>(column.size()), nullptr);
    return sqlite3_step(query.get()) == SQLITE_ROW;
}

}  // namespace

DatabaseCopier::Contents SqliteCopier::read(const Path& file) {
    int code = SQLITE_OK;
    const Handle database = openedFile(file, code);
    // Held until all is read, so that nobody writes in between.
    if (code == SQLITE_OK) code = run(database, "BEGIN; SELECT count(*) FROM sqlite_master");
    if (code != SQLITE_OK) return {{}, faultOf(code)};
    return wholeOf(database);
}

DatabaseFault SqliteCopier::replace(const Path& file, const std::string& contents, const Keep& keep) {
    int code = SQLITE_OK;
    const Handle source = inMemory(contents, code);
    if (code != SQLITE_OK) return DatabaseFault::failed;
    const Handle target = openedFile(file, code);
    // EXTRA: a commit has reached stable storage with its folder. A file with a write-ahead log keeps its page size,
    // so the log is ended first.
    if (code == SQLITE_OK) code = run(target, "PRAGMA synchronous = EXTRA; PRAGMA journal_mode = DELETE");
    if (code == SQLITE_OK) code = lockForGood(target);
    if (code != SQLITE_OK) return faultOf(code);
    const DatabaseFault kept = keepOld(target, contents, keep);
    return kept == DatabaseFault::none ? faultOf(copyPages(source, target)) : kept;
}

bool SqliteCopier::holdsTable(const std::string& contents, std::string_view table,
                              const std::vector<std::string>& columns) const {
    int code = SQLITE_OK;
    const Handle database = inMemory(contents, code);
    if (code != SQLITE_OK || !isUndamaged(database)) return false;
    for (const std::string& column : columns)
        if (!hasColumn(database, table, column)) return false;
    return true;
}

}  // namespace vantrell
