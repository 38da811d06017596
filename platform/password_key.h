// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace vantrell {

/// Bytes of an AES-256 key (FIPS 197, section 5).
inline constexpr std::size_t kCipherKeyBytes = 32;

/// A key, whose bytes are wiped from memory with the object, in a way that no compiler
/// leaves out.
class CipherKey {
public:
    CipherKey() = default;
    CipherKey(const CipherKey&) = default;
    CipherKey& operator=(const CipherKey&) = default;
    ~CipherKey() { wipe(); }

    void wipe() {
        for (volatile unsigned char& byte : bytes_) byte = 0;
    }
    [[nodiscard]] const unsigned char* data() const { return bytes_.data(); }
    [[nodiscard]] unsigned char* begin() { return bytes_.data(); }

private:
    std::array<unsigned char, kCipherKeyBytes> bytes_{};
};

/// The key that a password stands for: its ASCII bytes, cut at 32 or filled up with zero bytes to 32. There is no
/// salt and no stretching, so that any AES tool decrypts the files given this key.
[[nodiscard]] inline CipherKey keyFromPassword(std::string_view password) {
    CipherKey key;
    std::copy_n(password.begin(), std::min(password.size(), kCipherKeyBytes), key.begin());
    return key;
}

}  // namespace vantrell
