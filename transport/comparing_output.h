// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <vector>

#include "platform/file_toolbox.h"

namespace vantrell {

/// Takes what would be written into a new file and compares it with a file that stands already. Nothing is written.
class ComparingOutput final : public OutputFile {
public:
    explicit ComparingOutput(std::unique_ptr<StandingFile> standing) : standing_(std::move(standing)) {}

    /// A fault at the first difference, and when the file that stands cannot be read.
    Task<Result<>> write(std::span<const std::byte> bytes) override;
    // There is nothing to be brought to the disk or to be given a name.
    Task<Result<>> flush() override { co_return Result<>(); }
    Result<> nameIfFree(std::string) override { return {}; }
    Task<Result<>> publish(std::string, Replace) override { co_return Result<>(); }
    Task<void> discard() override { co_return; }

    /// The bytes are others.
    [[nodiscard]] bool differs() const { return differs_; }
    [[nodiscard]] bool cannotBeRead() const { return cannotBeRead_; }
    /// The file that was found equal.
    [[nodiscard]] std::unique_ptr<StandingFile> takeStanding() { return std::move(standing_); }

private:
    std::unique_ptr<StandingFile> standing_;
    std::vector<std::byte> piece_;
    bool differs_ = false;
    bool cannotBeRead_ = false;
};

}  // namespace vantrell
