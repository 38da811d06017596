// SPDX-License-Identifier: MIT
#include "platform/openssl/aes_ecb_encryptor.h"

#include <openssl/evp.h>

#include <algorithm>

namespace vantrell {

namespace {

// Larger pieces would hold up the event loop for longer than a turn while the disk is busy.
constexpr std::uint64_t kPieceBytes = 256 * 1024;
constexpr std::size_t kBlockBytes = 16;

Fault cipherFault() { return {FaultKind::other, "AES-256-ECB is not available from OpenSSL"}; }
Fault changedFault() { return {FaultKind::inUse, "the file changed while it was being read"}; }

unsigned char* asBytes(std::span<std::byte> bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

}  // namespace

void AesEcbEncryptor::FreeContext::operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }

AesEcbEncryptor::AesEcbEncryptor(const CipherKey& key) : context_(EVP_CIPHER_CTX_new()) {
    if (context_ && EVP_EncryptInit_ex2(context_.get(), EVP_aes_256_ecb(), key.data(), nullptr, nullptr) == 1) return;
    context_.reset();
}

AesEcbEncryptor::~AesEcbEncryptor() = default;

// One byte more than the file holds shows that it grew. The ciphertext of a piece is at most a block longer.
void AesEcbEncryptor::makeRoomFor(std::uint64_t fileSize) {
    const std::size_t piece = static_cast<std::size_t>(std::min(fileSize, kPieceBytes - 1) + 1);
    const std::size_t total = 2 * piece + kBlockBytes;
    buffer_ = std::make_unique_for_overwrite<std::byte[]>(total);
    plain_ = {buffer_.get(), piece};
    cipher_ = {buffer_.get() + piece, piece + kBlockBytes};
}

Result<std::size_t> AesEcbEncryptor::fill(HeldFile& source) const {
    std::size_t filled = 0;
    while (filled < plain_.size()) {
        const Result<std::size_t> got = source.read(plain_.subspan(filled));
        if (!got.ok()) return got;
        if (got.value() == 0) break;
        filled += got.value();
    }
    return filled;
}

// All pieces but the last are whole blocks, so no more than one piece and the padding comes out at once.
bool AesEcbEncryptor::encryptPiece(std::size_t plainBytes, bool isLast, std::size_t& made) {
    int length = 0;
    int padding = 0;
    const int bytes = static_cast<int>(plainBytes);
    if (EVP_EncryptUpdate(context_.get(), asBytes(cipher_), &length, asBytes(plain_), bytes) != 1) return false;
    if (isLast && EVP_EncryptFinal_ex(context_.get(), asBytes(cipher_) + length, &padding) != 1) return false;
    made = static_cast<std::size_t>(length + padding);
    return true;
}

Task<Result<>> AesEcbEncryptor::encrypt(EventLoop& loop, HeldFile& source, OutputFile& output,
                                        CryptoComponent::Progress progress) {
    if (!context_) co_return cipherFault();
    const std::uint64_t total = source.size();
    makeRoomFor(total);
    std::uint64_t done = 0;
    for (bool atEnd = false; !atEnd;) {
        const Result<std::size_t> filled = fill(source);
        if (!filled.ok()) co_return filled.fault();
        const std::size_t got = filled.value();
        std::size_t made = 0;
        atEnd = got < plain_.size();
        done += got;
        if (done > total || (atEnd && done < total)) co_return changedFault();
        if (!encryptPiece(got, atEnd, made)) co_return cipherFault();
        const Result<> written = co_await output.write(cipher_.first(made));
        if (!written.ok()) co_return written.fault();
        if (progress) progress(done, total);
        co_await loop.breathe();
    }
    co_return Result<>();
}

}  // namespace vantrell
