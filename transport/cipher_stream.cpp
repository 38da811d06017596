// SPDX-License-Identifier: MIT
#include "transport/cipher_stream.h"

#include <algorithm>

namespace vantrell {

namespace {

// Larger pieces would hold up the event loop for longer than a turn while the disk is busy.
constexpr std::uint64_t kPieceBytes = 256 * 1024;

Fault changedFault() { return {FaultKind::inUse, "the file changed while it was being read"}; }

}  // namespace

// One byte more than the file holds shows that it grew. The ciphertext of a piece is at most a block longer.
CipherStream::CipherStream(EventLoop& loop, Cipher& cipher, HeldFile& source, OutputFile& output)
    : loop_(loop), cipher_(cipher), source_(source), output_(output) {
    const auto piece = static_cast<std::size_t>(std::min(source.size(), kPieceBytes - 1) + 1);
    const std::size_t total = 2 * piece + Cipher::kBlockBytes;
    buffer_ = std::make_unique_for_overwrite<std::byte[]>(total);
    plain_ = {buffer_.get(), piece};
    encrypted_ = {buffer_.get() + piece, piece + Cipher::kBlockBytes};
}

Result<std::size_t> CipherStream::fill() {
    std::size_t filled = 0;
    while (filled < plain_.size()) {
        Result<std::size_t> got = source_.read(plain_.subspan(filled));
        if (!got.ok()) return got;
        if (got.value() == 0) break;
        filled += got.value();
    }
    return filled;
}

// All pieces but the last are whole blocks, so no more than one piece and the padding comes out at once.
Result<std::size_t> CipherStream::encrypt(std::size_t plainBytes, bool isLast) {
    Result<std::size_t> made = cipher_.add(plain_.first(plainBytes), encrypted_);
    if (!made.ok() || !isLast) return made;
    Result<std::size_t> padding = cipher_.finish(encrypted_.subspan(made.value()));
    if (!padding.ok()) return padding;
    return made.value() + padding.value();
}

Task<Result<>> CipherStream::run(Progress progress) {
    const std::uint64_t total = source_.size();
    std::uint64_t done = 0;
    for (bool atEnd = false; !atEnd;) {
        const Result<std::size_t> got = fill();
        if (!got.ok()) co_return got.fault();
        atEnd = got.value() < plain_.size();
        done += got.value();
        if (done > total || (atEnd && done < total)) co_return changedFault();
        const Result<std::size_t> made = encrypt(got.value(), atEnd);
        if (!made.ok()) co_return made.fault();
        const Result<> written = co_await output_.write(encrypted_.first(made.value()));
        if (!written.ok()) co_return written;
        if (progress) progress(done, total);
        co_await loop_.breathe();
    }
    co_return Result<>();
}

}  // namespace vantrell
