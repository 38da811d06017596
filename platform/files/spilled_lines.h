// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/unique_fd.h"
#include "platform/line_store.h"

namespace vantrell {

/// The newest lines in memory, older ones in a file without a name, which only this process can open and which is gone
/// with it. In memory lie at most `kLinesInMemory` lines, 8 bytes for each 64 older ones, and one block of those.
///
/// The file holds blocks of 64 lines, each line as its length (4 bytes, in the machine's own order) and its bytes. It
/// is made when it is first needed. While it cannot be written (a full disk), lines stay in memory.
class SpilledLines final : public LineStore {
public:
    static constexpr std::size_t kLinesInMemory = 10'000;

    /// `folder` is where the file goes, looked at when it is made. Where none can be made there, the other folder is
    /// taken. Kernel and `folder` outlive this.
    SpilledLines(Kernel& kernel, const Path& folder, Path otherFolder)
        : kernel_(kernel), folder_(folder), otherFolder_(std::move(otherFolder)) {}

    void append(std::string_view line) override;
    [[nodiscard]] std::size_t size() const override { return spilled_ + recent_.size(); }
    [[nodiscard]] std::string line(std::size_t index) const override;

    [[nodiscard]] std::size_t linesInMemory() const { return recent_.size(); }

private:
    void spill();
    [[nodiscard]] bool openFile();
    Result<> writeBlocks(std::size_t lines, std::vector<std::uint64_t>& ends);
    [[nodiscard]] bool loadBlock(std::size_t block) const;

    Kernel& kernel_;
    const Path& folder_;
    Path otherFolder_;
    UniqueFd file_;
    std::deque<std::string> recent_;
    std::size_t spilled_ = 0;
    std::size_t spillAt_ = kLinesInMemory;
    std::vector<std::uint64_t> blockEnds_;  ///< where each block ends in the file

    mutable std::vector<std::string> block_;  ///< the block that was read last
    mutable std::size_t blockNumber_ = SIZE_MAX;
};

}  // namespace vantrell
