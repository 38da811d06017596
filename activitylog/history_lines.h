// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/line_source.h"
#include "platform/readable_file.h"

namespace vantrell {

/// The lines of the log files that were opened, one file after the other. They stay in their files; what is kept is
/// where each 64th line begins (8 bytes), so that any line can be read when it comes into sight.
///
/// A line ends with a line feed, or a carriage return and a line feed; what follows the last one is a line too. Lines
/// are given out as people are shown them (control characters and invalid bytes as `\xNN`). A line of more than 64 KiB,
/// which no log has but any other file may, counts as several.
class HistoryLines final : public LineSource {
public:
    static constexpr std::size_t kLongestLine = std::size_t{64} * 1024;
    static constexpr std::size_t kBlock = 64;

    /// The lines of this file will follow those that are there.
    void addFile(std::unique_ptr<ReadableFile> file);
    /// Takes in the next 256 KiB of the file that was added last. The value is False when it has come to its end. The
    /// lines before the end or a fault stay.
    Result<bool> takePiece();
    /// Forgets all lines and closes the files.
    void clear();

    [[nodiscard]] std::size_t size() const override;
    [[nodiscard]] std::string line(std::size_t index) const override;
    /// The line of this index and some of those that follow it, at most `kBlock`; at least one when there is one.
    [[nodiscard]] std::vector<std::string> linesFrom(std::size_t index) const;

    void setByteWidths(const ByteWidths& widths) override;
    [[nodiscard]] std::size_t widestLine() const override { return widest_.index(); }

private:
    struct Section {
        std::unique_ptr<ReadableFile> file;
        std::size_t firstLine = 0;
        std::size_t lines = 0;
        std::vector<std::uint64_t> blockBegins;
        std::uint64_t end = 0;  ///< of the last line that was taken in
    };

    void addLine(Section& section, std::string_view bytes);
    [[nodiscard]] const Section& sectionOf(std::size_t index) const;
    [[nodiscard]] std::vector<std::string> readBlock(const Section& section, std::size_t block) const;

    std::vector<Section> sections_;
    std::vector<char> piece_;
    WidestLine widest_;

    mutable std::vector<std::string> lastBlock_;  // lines are asked for one after the other
    mutable std::size_t lastBlockFirstLine_ = SIZE_MAX;
};

}  // namespace vantrell
