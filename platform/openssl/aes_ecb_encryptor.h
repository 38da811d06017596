// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/types.h>

#include <memory>
#include <span>

#include "platform/crypto_component.h"
#include "platform/event_loop.h"
#include "platform/password_key.h"

namespace vantrell {

/// AES-256 in ECB mode with PKCS #7 padding (FIPS 197, NIST SP 800-38A, RFC 5652 section 6.3), from a file to a file
/// that is being made. One instance serves one file; what it keeps of the key is wiped with it.
class AesEcbEncryptor {
public:
    explicit AesEcbEncryptor(const CipherKey& key);
    AesEcbEncryptor(const AesEcbEncryptor&) = delete;
    AesEcbEncryptor& operator=(const AesEcbEncryptor&) = delete;
    ~AesEcbEncryptor();

    /// Reads `source` to its end and appends the ciphertext to `output`, which is neither flushed nor published here.
    /// Fault `inUse` when the source turns out shorter or longer than it was when it was opened. All parameters that
    /// are references must outlive the task, and so must the encryptor. Memory does not grow with the file.
    Task<Result<>> encrypt(EventLoop& loop, HeldFile& source, OutputFile& output, CryptoComponent::Progress progress);

private:
    void makeRoomFor(std::uint64_t fileSize);
    Result<std::size_t> fill(HeldFile& source) const;
    bool encryptPiece(std::size_t plainBytes, bool isLast, std::size_t& made);

    struct FreeContext {
        void operator()(EVP_CIPHER_CTX* context) const;
    };
    std::unique_ptr<EVP_CIPHER_CTX, FreeContext> context_;  // null when the cipher could not be set up
    std::unique_ptr<std::byte[]> buffer_;
    std::span<std::byte> plain_;
    std::span<std::byte> cipher_;
};

}  // namespace vantrell
