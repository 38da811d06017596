// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sqlite/sqlite_session.h"

namespace vantrell {

/// How the records of one table are told apart.
struct SqliteTable {
    std::string name;
    /// Expressions that together name one record: the row id, or the columns of the primary key of a table without row
    /// ids. Empty when there is nothing of the kind (a view).
    std::vector<std::string> keys;
    DatabaseError error;
};

/// NAME of a query "SELECT * from NAME", else empty: the records of other queries belong to no table.
[[nodiscard]] std::string tableListedBy(std::string_view query);

/// The name in double quotes, as SQL wants it for names that could be taken for something else.
[[nodiscard]] std::string quotedName(std::string_view name);

/// "one, two, three".
[[nodiscard]] std::string commaList(const std::vector<std::string>& items);

/// The letter case of ASCII letters does not count in names.
[[nodiscard]] bool isSameName(std::string_view one, std::string_view other);

Task<SqliteTable> describeTable(std::shared_ptr<SqliteSession> session, std::string name);

}  // namespace vantrell
