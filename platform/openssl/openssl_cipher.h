// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/types.h>

#include <memory>

#include "platform/cipher.h"

namespace vantrell {

/// The cipher over OpenSSL 3.
class OpensslCipher final : public Cipher {
public:
    explicit OpensslCipher(const CipherKey& key);
    ~OpensslCipher() override;

    [[nodiscard]] Result<std::size_t> add(std::span<const std::byte> plain, std::span<std::byte> into) override;
    [[nodiscard]] Result<std::size_t> finish(std::span<std::byte> into) override;

private:
    struct FreeContext {
        void operator()(EVP_CIPHER_CTX* context) const;
    };
    std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context_;  // null when the cipher could not be set up
};

/// A CipherFactory.
[[nodiscard]] std::unique_ptr<Cipher> makeOpensslCipher(const CipherKey& key);

}  // namespace vantrell
