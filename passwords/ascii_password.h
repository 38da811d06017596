// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <string_view>

namespace vantrell {

/// Whether a file can be encrypted with the password as it is: the key is made of its ASCII bytes.
[[nodiscard]] inline bool isAsciiPassword(std::string_view password) {
    return std::all_of(password.begin(), password.end(), [](char byte) { return (byte & 0x80) == 0; });
}

}  // namespace vantrell
