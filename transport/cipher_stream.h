// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/cipher.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// Encrypts what one file holds into another one that is being made. One instance serves one file.
class CipherStream {
public:
    using Progress = std::function<void(std::uint64_t done, std::uint64_t total)>;

    /// All of it outlives the stream, and the stream its task.
    CipherStream(EventLoop& loop, Cipher& cipher, HeldFile& source, OutputFile& output);

    /// Reads the source to its end and appends the ciphertext to the output, which is neither flushed nor published
    /// here. Fault `inUse` when the source turns out shorter or longer than it was when it was opened.
    Task<Result<>> run(Progress progress);

private:
    [[nodiscard]] Result<std::size_t> fill();
    [[nodiscard]] Result<std::size_t> encrypt(std::size_t plainBytes, bool isLast);

    EventLoop& loop_;
    Cipher& cipher_;
    HeldFile& source_;
    OutputFile& output_;
    std::unique_ptr<std::byte[]> buffer_;
    std::span<std::byte> plain_;
    std::span<std::byte> encrypted_;
};

}  // namespace vantrell
