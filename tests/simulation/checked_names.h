// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "base/display_text.h"

namespace vantrell::test {

// Names and paths as the checker compares them.

inline constexpr std::string_view kEnding = ".enc";

inline std::string lowered(std::string name) {
    for (char& c : name)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return name;
}
/// As questions name it, whatever the disk takes for the same name.
inline std::string placeOf(const std::string& path) { return lowered(displayText(path)); }
inline bool isOutput(const std::string& path) {
    return path.size() > kEnding.size() && lowered(path).ends_with(kEnding);
}
inline std::string withoutEnding(const std::string& name) { return name.substr(0, name.size() - kEnding.size()); }

}  // namespace vantrell::test
