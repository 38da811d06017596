// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/kernel.h"
#include "platform/readable_file.h"

namespace vantrell {

/// Reading over a kernel.
class PosixFileReading final : public FileReading {
public:
    /// The kernel outlives it and the files that it opens.
    explicit PosixFileReading(Kernel& kernel) : kernel_(kernel) {}

    [[nodiscard]] Result<std::unique_ptr<ReadableFile>> openForReading(const Path& path) const override;

private:
    Kernel& kernel_;
};

}  // namespace vantrell
