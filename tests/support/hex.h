// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantrell::test {

inline std::string toHex(std::string_view bytes) {
    std::string hex;
    for (const char c : bytes)
        for (const int shift : {4, 0}) hex += "0123456789abcdef"[(static_cast<unsigned char>(c) >> shift) & 15];
    return hex;
}

/// Blanks and line ends between the digits are passed over.
inline std::string fromHex(std::string_view hex) {
    std::string digits;
    for (const char c : hex)
        if (c != ' ' && c != '\n') digits += c;
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return bytes;
}

}  // namespace vantrell::test
