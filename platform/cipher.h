// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

#include "base/result.h"
#include "platform/password_key.h"

namespace vantrell {

/// Encrypts one message, piece by piece: AES-256 in ECB mode with PKCS #7 padding (FIPS 197, NIST SP 800-38A, RFC 5652
/// section 6.3). What it keeps of the key is wiped with it.
class Cipher {
public:
    static constexpr std::size_t kBlockBytes = 16;

    Cipher() = default;
    Cipher(const Cipher&) = delete;
    Cipher& operator=(const Cipher&) = delete;
    virtual ~Cipher() = default;

    /// Encrypts the next bytes of the message. `into` has room for a block more than there are. The value is how many
    /// bytes of ciphertext came out; what does not fill a block is kept for later.
    [[nodiscard]] virtual Result<std::size_t> add(std::span<const std::byte> plain, std::span<std::byte> into) = 0;
    /// Pads and encrypts what was kept; nothing can be added any more. `into` has room for a block.
    [[nodiscard]] virtual Result<std::size_t> finish(std::span<std::byte> into) = 0;
};

/// Makes a cipher for one message. One that cannot be had is told by its first `add` or `finish`.
using CipherFactory = std::function<std::unique_ptr<Cipher>(const CipherKey&)>;

}  // namespace vantrell
