// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "base/fault.h"
#include "base/path.h"

namespace vantrell {

/// A regular file that is open for reading at any place. It stays readable when its name is given to another file or
/// removed; whoever appends to it is not held up.
class ReadableFile {
public:
    ReadableFile() = default;
    ReadableFile(const ReadableFile&) = delete;
    ReadableFile& operator=(const ReadableFile&) = delete;
    virtual ~ReadableFile() = default;

    /// Reads from `offset` (bytes) on until `into` is full or the file ends; `got` says how much came.
    virtual FileFault readAt(std::uint64_t offset, std::span<char> into, std::size_t& got) const = 0;
};

/// Opens files for reading only.
class FileReading {
public:
    FileReading() = default;
    FileReading(const FileReading&) = delete;
    FileReading& operator=(const FileReading&) = delete;
    virtual ~FileReading() = default;

    struct Opened {
        std::unique_ptr<ReadableFile> file;  ///< null on failure
        FileFault fault;
    };
    /// A link, a folder and whatever else is no regular file is a fault; nothing waits for a FIFO's other end.
    [[nodiscard]] virtual Opened openForReading(const Path& path) const = 0;
};

}  // namespace vantrell
