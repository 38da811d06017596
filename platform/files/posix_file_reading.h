// SPDX-License-Identifier: MIT
#pragma once

#include "platform/readable_file.h"

namespace vantrell {

/// Reading on a POSIX system.
class PosixFileReading final : public FileReading {
public:
    [[nodiscard]] Result<std::unique_ptr<ReadableFile>> openForReading(const Path& path) const override;
};

}  // namespace vantrell
