// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace vantrell {

/// Bytes of an AES-256 key (FIPS 197, section 5).
inline constexpr std::size_t kCipherKeyBytes = 32;
using CipherKey = std::array<unsigned char, kCipherKeyBytes>;

/// The key that a password stands for: its ASCII bytes, cut at 32 or filled up with zero bytes to 32. There is no
/// salt and no stretching, so that any AES tool decrypts the files given this key.
[[nodiscard]] inline CipherKey keyFromPassword(std::string_view password) {
    CipherKey key{};
    std::copy_n(password.begin(), std::min(password.size(), key.size()), key.begin());
    return key;
}

}  // namespace vantrell
