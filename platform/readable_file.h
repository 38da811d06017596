// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "base/path.h"
#include "base/result.h"

namespace vantrell {

/// A regular file that is open for reading at any place. It stays readable when its name is given to another file or
/// removed; whoever appends to it is not held up.
class ReadableFile {
public:
    ReadableFile() = default;
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;
    virtual ~ReadableFile() = default;

    /// Reads from `offset` (bytes) on until `into` is full or the file ends; the value is how much came.
    [[nodiscard]] virtual Result<std::size_t> readAt(std::uint64_t offset, std::span<char> into) const = 0;
};

/// Opens files for reading only.
class FileReading {
public:
    FileReading() = default;
    FileReading(const FileReading&) = delete;
    FileReading& operator=(const FileReading&) = delete;
    virtual ~FileReading() = default;

    /// A link, a folder and whatever else is no regular file is a fault; nothing waits for a FIFO's other end.
    [[nodiscard]] virtual Result<std::unique_ptr<ReadableFile>> openForReading(const Path& path) const = 0;
};

}  // namespace vantrell
