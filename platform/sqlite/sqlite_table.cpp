// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_table.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vantrell {

namespace {

// All three name the row id unless a column took the name (https://www.sqlite.org/lang_createtable.html#rowid).
constexpr std::string_view kRowIdNames[] = {"_rowid_", "rowid", "oid"};

struct Column {
    std::string name;
    std::int64_t keyPosition = 0;
};

char lowerCase(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

bool isNameLetter(char letter) {
    return (lowerCase(letter) >= 'a' && lowerCase(letter) <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
}

std::vector<Column> columnsOf(const SqliteResult& result) {
    std::vector<Column> columns;
    std::transform(result.rows.begin(), result.rows.end(), std::back_inserter(columns), [](const auto& row) {
        return Column{textOf(row.at(0)), std::get<std::int64_t>(row.at(1))};
    });
    return columns;
}

std::string freeRowIdName(const std::vector<Column>& columns) {
    for (const std::string_view name : kRowIdNames) {
        const auto isTaken = [name](const Column& column) { return isSameName(column.name, name); };
        if (std::none_of(columns.begin(), columns.end(), isTaken)) return std::string(name);
    }
    return {};
}

std::vector<std::string> primaryKeyOf(std::vector<Column> columns) {
    std::erase_if(columns, [](const Column& column) { return column.keyPosition == 0; });
    std::sort(columns.begin(), columns.end(),
              [](const Column& one, const Column& other) { return one.keyPosition < other.keyPosition; });
    std::vector<std::string> keys;
    keys.reserve(columns.size());
    for (const Column& column : columns) keys.push_back(quotedName(column.name));
    return keys;
}

}  // namespace

std::string tableListedBy(std::string_view query) {
    constexpr std::string_view kListing = "select * from ";
    if (query.size() <= kListing.size() || !isSameName(query.substr(0, kListing.size()), kListing)) return {};
    const std::string_view name = query.substr(kListing.size());
    return std::all_of(name.begin(), name.end(), isNameLetter) ? std::string(name) : std::string();
}

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char letter : name) quoted.append(letter == '"' ? 2 : 1, letter);
    return quoted + "\"";
}

std::string commaList(const std::vector<std::string>& items) {
    std::string list;
    for (const std::string& item : items) list += (list.empty() ? "" : ", ") + item;
    return list;
}

bool isSameName(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char a, char b) { return lowerCase(a) == lowerCase(b); });
}

Task<SqliteTable> describeTable(std::shared_ptr<SqliteSession> session, std::string name) {
    SqliteTable table{std::move(name), {}, {}};
    const auto described = co_await session->run("SELECT name, pk FROM pragma_table_info(?)", {table.name});
    table.error = described.error;
    if (table.error) co_return table;
    const std::vector<Column> columns = columnsOf(described);
    const std::string rowId = freeRowIdName(columns);
    if (!rowId.empty()) {
        const auto probe =
            co_await session->run("SELECT " + rowId + " FROM " + quotedName(table.name) + " LIMIT 0", {});
        if (!probe.error) {
            table.keys.push_back(rowId);
            co_return table;
        }
    }
    table.keys = primaryKeyOf(columns);
    co_return table;
}

}  // namespace vantrell
