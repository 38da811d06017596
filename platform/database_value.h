// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace vantrell {

/// Bytes that a database holds as such and not as text.
struct Blob {
    std::string bytes;
    bool operator==(const Blob&) const = default;
};

/// What a field of a record holds; `monostate` is the database's Null. Texts are UTF-8.
using DatabaseValue = std::variant<std::monostate, bool, std::int64_t, double, std::string, Blob>;

/// The value as text: Null is empty, Booleans are "True" and "False", a whole number has no decimal point.
[[nodiscard]] std::string textOf(const DatabaseValue& value);

/// The value as Boolean, whoever wrote it: every number but 0 is True (so 1 and -1 both are), and so are the texts
/// true, yes, on, t, y and numbers but 0, in any letter case, also between two "#". All else is False, Null too.
[[nodiscard]] bool booleanOf(const DatabaseValue& value);

}  // namespace vantrell
