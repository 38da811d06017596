// SPDX-License-Identifier: MIT
#include "platform/openssl/openssl_cipher.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>

#include "platform/library_versions.h"

namespace vantrell {

namespace {

Fault cipherFault() { return {FaultKind::other, "AES-256-ECB is not available from OpenSSL"}; }

unsigned char* asBytes(std::span<std::byte> bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

}  // namespace

void OpensslCipher::FreeContext::operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }

OpensslCipher::OpensslCipher(const CipherKey& key) : context_(EVP_CIPHER_CTX_new()) {
    if (context_ && EVP_EncryptInit_ex2(context_.get(), EVP_aes_256_ecb(), key.data(), nullptr, nullptr) == 1) return;
    context_.reset();
}

OpensslCipher::~OpensslCipher() = default;

Result<std::size_t> OpensslCipher::add(std::span<const std::byte> plain, std::span<std::byte> into) {
    int made = 0;
    const auto* const bytes = reinterpret_cast<const unsigned char*>(plain.data());
    const int count = static_cast<int>(plain.size());
    if (!context_ || EVP_EncryptUpdate(context_.get(), asBytes(into), &made, bytes, count) != 1) return cipherFault();
    return static_cast<std::size_t>(made);
}

Result<std::size_t> OpensslCipher::finish(std::span<std::byte> into) {
    int made = 0;
    if (!context_ || EVP_EncryptFinal_ex(context_.get(), asBytes(into), &made) != 1) return cipherFault();
    return static_cast<std::size_t>(made);
}

LibraryVersion cipherLibraryVersion() { return {"OpenSSL", ::OpenSSL_version(OPENSSL_VERSION_STRING)}; }

std::unique_ptr<Cipher> makeOpensslCipher(const CipherKey& key) { return std::make_unique<OpensslCipher>(key); }

}  // namespace vantrell
