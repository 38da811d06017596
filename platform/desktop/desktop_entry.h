// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/path.h"

namespace vantrell {

/// The keys of a desktop entry file's group "Desktop Entry" (freedesktop Desktop Entry Specification 1.5). Other groups
/// are passed over. Of a key that is given twice the later value counts, as it does for desktops.
class DesktopEntry {
public:
    /// Nothing when the text is not a desktop entry file.
    static std::optional<DesktopEntry> parse(std::string_view text);

    [[nodiscard]] bool has(const std::string& key) const { return values_.contains(key); }
    /// A value of type string, with its escapes (\s \n \t \r \\) resolved; empty when there is no such key.
    [[nodiscard]] std::string value(const std::string& key) const;
    /// A list of strings, each ended or divided by ';'.
    [[nodiscard]] std::vector<std::string> list(const std::string& key) const;
    /// "true" or "false" (older files say 1 or 0); `otherwise` when the key is missing or says neither.
    [[nodiscard]] bool flag(const std::string& key, bool otherwise) const;

private:
    std::map<std::string, std::string> values_;
};

/// The words of a command line as it stands in Exec, quotes resolved and field codes (%f …) left out. Nothing when a
/// quote is not closed.
std::optional<std::vector<std::string>> wordsOfExec(std::string_view command);

/// One argument as a word of a command line for Exec.
std::string quotedForExec(std::string_view argument);

/// A text as a value of type string.
std::string escapedValue(std::string_view text);

/// Whether desktop entries, which are UTF-8 text in lines, can name this path.
bool canStandInDesktopEntry(const Path& path);

}  // namespace vantrell
