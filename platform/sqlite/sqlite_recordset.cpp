// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_recordset.h"

#include <algorithm>

namespace vantrell {

namespace {

bool isKeptAs(const DatabaseValue& given, const DatabaseValue& kept) {
    if (std::holds_alternative<bool>(given)) return booleanOf(kept) == std::get<bool>(given);
    const bool bothNull = std::holds_alternative<std::monostate>(given) == std::holds_alternative<std::monostate>(kept);
    return bothNull && textOf(given) == textOf(kept);
}

DatabaseError closedError() { return {adErrObjectClosed, "Operation is not allowed when the object is closed."}; }

DatabaseError lostRowError() {
    return {kRowCannotBeLocated,
            "Row cannot be located for updating. Some values may have been changed since it was last read."};
}

DatabaseError noSuchField(std::string_view field) {
    return {adErrItemNotFound,
            "Item cannot be found in the collection corresponding to the requested name or ordinal: "
            "there is no column \"" +
                std::string(field) + "\"."};
}

}  // namespace

SqliteRecordset::SqliteRecordset(const std::shared_ptr<SqliteSession>& session, SqliteResult result)
    : session_(session) {
    take(std::move(result), 0);
}

void SqliteRecordset::setActiveConnection(std::shared_ptr<Connection> connection) {
    const auto sqlite = std::dynamic_pointer_cast<SqliteConnection>(connection);
    isDetached_ = isOpen_ && !sqlite;
    session_ = sqlite ? sqlite->session() : nullptr;
}

Task<DatabaseError> SqliteRecordset::open() {
    if (state() == adStateOpen) {
        co_return DatabaseError{adErrObjectOpen, "Operation is not allowed when the object is open."};
    }
    co_return co_await load();
}

Task<DatabaseError> SqliteRecordset::requery(int) { return load(); }

Task<DatabaseError> SqliteRecordset::load() {
    close();
    const auto session = session_.lock();
    if (!session) {
        co_return DatabaseError{adErrInvalidConnection,
                                "The connection cannot be used to perform this operation. It is closed."};
    }
    std::string sql = source_;
    table_ = {};
    const std::string name = lockType_ == adLockReadOnly ? std::string() : tableListedBy(source_);
    if (!name.empty()) table_ = co_await describeTable(session, name);
    if (table_.error) co_return table_.error;
    // The row id is part of every index, so asking for it too changes nothing about the order of the rows.
    if (!table_.keys.empty()) sql = "SELECT " + commaList(table_.keys) + ", * FROM " + quotedName(table_.name);
    SqliteResult result = co_await session->run(std::move(sql), {});
    if (result.error) co_return result.error;
    take(std::move(result), table_.keys.size());
    co_return DatabaseError{};
}

void SqliteRecordset::take(SqliteResult result, std::size_t keyColumns) {
    const auto keys = static_cast<std::ptrdiff_t>(keyColumns);
    columns_.assign(result.columns.begin() + keys, result.columns.end());
    rows_.clear();
    for (auto& values : result.rows) {
        rows_.push_back({{values.begin(), values.begin() + keys}, {values.begin() + keys, values.end()}});
    }
    isOpen_ = true;
    isDetached_ = false;
    moveFirst();
}

ObjectStateEnum SqliteRecordset::state() const {
    const auto session = session_.lock();
    return isOpen_ && (isDetached_ || (session && session->isOpen())) ? adStateOpen : adStateClosed;
}

void SqliteRecordset::close() {
    isOpen_ = false;
    isDetached_ = false;
    rows_.clear();
    dropChanges();
}

void SqliteRecordset::dropChanges() {
    changes_.clear();
    isAdding_ = false;
}

std::int64_t SqliteRecordset::recordCount() const {
    return state() == adStateOpen ? static_cast<std::int64_t>(rows_.size()) : -1;
}

bool SqliteRecordset::eof() const { return state() != adStateOpen || (position_ >= rows_.size() && !isOnDeleted_); }

void SqliteRecordset::moveFirst() {
    dropChanges();
    position_ = 0;
    isOnDeleted_ = false;
}

void SqliteRecordset::moveNext() {
    dropChanges();
    // The record behind a deleted one has moved up into its place.
    if (!isOnDeleted_ && position_ < rows_.size()) ++position_;
    isOnDeleted_ = false;
}

std::optional<std::size_t> SqliteRecordset::columnNamed(std::string_view name) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(),
                                    [name](const std::string& column) { return isSameName(column, name); });
    if (found == columns_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - columns_.begin());
}

DatabaseError SqliteRecordset::currentRecordError() const {
    if (state() != adStateOpen) return closedError();
    if (!isOnDeleted_ && position_ < rows_.size()) return {};
    return {adErrNoCurrentRecord,
            "Either BOF or EOF is True, or the current record has been deleted. The operation requires a current "
            "record."};
}

DatabaseError SqliteRecordset::changeError() const {
    if (state() != adStateOpen) return closedError();
    const bool isInsertOnly = isAdding_ && !table_.name.empty();
    if (!session_.expired() && (isInsertOnly || !table_.keys.empty())) return {};
    return {adErrFeatureNotAvailable, "The records of this query cannot be changed."};
}

FieldResult SqliteRecordset::value(std::string_view field) const {
    if (auto error = currentRecordError()) return {{}, error};
    const auto column = columnNamed(field);
    if (!column) return {{}, noSuchField(field)};
    return {rows_[position_].values.at(*column), {}};
}

DatabaseError SqliteRecordset::setValue(std::string_view field, DatabaseValue value) {
    if (!isAdding_) {
        if (auto error = currentRecordError()) return error;
    }
    const auto column = columnNamed(field);
    if (!column) return noSuchField(field);
    std::erase_if(changes_, [&](const Change& change) { return change.column == *column; });
    changes_.push_back({*column, std::move(value)});
    return {};
}

DatabaseError SqliteRecordset::addNew() {
    dropChanges();
    isAdding_ = true;
    DatabaseError error = changeError();
    if (error) isAdding_ = false;
    return error;
}

std::string SqliteRecordset::keyCondition() const {
    std::string condition;
    for (const std::string& key : table_.keys) condition += (condition.empty() ? " WHERE " : " AND ") + key + " = ?";
    return condition;
}

// Both statements return the key and the values that were set, as the table keeps them.
SqliteRecordset::Statement SqliteRecordset::insertStatement() const {
    Statement statement;
    std::vector<std::string> names;
    for (const Change& change : changes_) {
        names.push_back(quotedName(columns_[change.column]));
        statement.parameters.push_back(change.value);
    }
    std::vector<std::string> returned = table_.keys;
    returned.insert(returned.end(), names.begin(), names.end());
    statement.sql = "INSERT INTO " + quotedName(table_.name);
    statement.sql += names.empty() ? std::string(" DEFAULT VALUES")
                                   : " (" + commaList(names) + ") VALUES (" +
                                         commaList(std::vector<std::string>(names.size(), "?")) + ")";
    statement.sql += " RETURNING " + commaList(returned);
    return statement;
}

SqliteRecordset::Statement SqliteRecordset::updateStatement() const {
    Statement statement;
    std::vector<std::string> settings;
    std::vector<std::string> returned = table_.keys;
    for (const Change& change : changes_) {
        const std::string name = quotedName(columns_[change.column]);
        settings.push_back(name + " = ?");
        returned.push_back(name);
        statement.parameters.push_back(change.value);
    }
    const auto& key = rows_[position_].key;
    statement.parameters.insert(statement.parameters.end(), key.begin(), key.end());
    statement.sql = "UPDATE " + quotedName(table_.name) + " SET " + commaList(settings) + keyCondition() +
                    " RETURNING " + commaList(returned);
    return statement;
}

Task<DatabaseError> SqliteRecordset::update() {
    if (state() == adStateOpen && !isAdding_ && changes_.empty()) co_return DatabaseError{};
    DatabaseError error = changeError();
    if (!error && !isAdding_) error = currentRecordError();
    if (error) co_return error;
    const auto session = session_.lock();
    error = co_await write(session, isAdding_ ? insertStatement() : updateStatement(), true);
    dropChanges();
    co_return error;
}

Task<DatabaseError> SqliteRecordset::deleteRecord(AffectEnum) {
    dropChanges();
    DatabaseError error = currentRecordError();
    if (!error) error = changeError();
    if (error) co_return error;
    const auto session = session_.lock();
    Statement statement{"DELETE FROM " + quotedName(table_.name) + keyCondition(), rows_[position_].key};
    error = co_await write(session, std::move(statement), false);
    if (error) co_return error;
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(position_));
    isOnDeleted_ = true;
    co_return error;
}

Task<DatabaseError> SqliteRecordset::write(std::shared_ptr<SqliteSession> session, Statement statement,
                                           bool returnsValues) {
    const bool isOwnTransaction = !session->isInTransaction();
    SqliteRollbackGuard guard(isOwnTransaction ? session : nullptr);
    DatabaseError error;
    if (isOwnTransaction) error = (co_await session->run("BEGIN IMMEDIATE", {})).error;
    if (error) co_return error;
    const SqliteResult result = co_await session->run(std::move(statement.sql), std::move(statement.parameters));
    error = result.error;
    if (!error && returnsValues) error = checkWritten(result);
    if (!error && !returnsValues && result.changes != 1) error = lostRowError();
    if (!error && isOwnTransaction) error = (co_await session->run("COMMIT", {})).error;
    if (error) co_return error;
    guard.committed();
    if (returnsValues) takeWritten(result.rows.front());
    co_return error;
}

DatabaseError SqliteRecordset::checkWritten(const SqliteResult& written) const {
    if (written.rows.size() != 1) return lostRowError();
    const auto& returned = written.rows.front();
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        if (isKeptAs(changes_[i].value, returned.at(table_.keys.size() + i))) continue;
        return {kErrorsOccurred, "The column \"" + columns_[changes_[i].column] + "\" of the table \"" + table_.name +
                                     "\" cannot keep this value as it is. Nothing was changed."};
    }
    return {};
}

void SqliteRecordset::takeWritten(const std::vector<DatabaseValue>& returned) {
    if (!isOpen_) return;
    const auto keys = static_cast<std::ptrdiff_t>(table_.keys.size());
    if (isAdding_) {
        rows_.push_back({{}, std::vector<DatabaseValue>(columns_.size())});
        position_ = rows_.size() - 1;
        isOnDeleted_ = false;
    }
    Row& row = rows_.at(position_);
    row.key.assign(returned.begin(), returned.begin() + keys);
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        row.values.at(changes_[i].column) = returned.at(table_.keys.size() + i);
    }
}

}  // namespace vantrell
