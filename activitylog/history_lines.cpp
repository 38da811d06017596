// SPDX-License-Identifier: MIT
#include "activitylog/history_lines.h"

#include <algorithm>
#include <utility>

#include "base/display_text.h"

namespace vantrell {

namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;
constexpr char kCannotBeRead[] = "(this line cannot be read again)";

/// The length of the line that `rest` begins with, its line end included; 0 when its end is not in sight.
std::size_t lengthOfLine(std::string_view rest, bool isAll) {
    const std::string_view longest = rest.substr(0, HistoryLines::kLongestLine);
    const std::size_t lineFeed = longest.find('\n');
    if (lineFeed != std::string_view::npos) return lineFeed + 1;
    return isAll || longest.size() < rest.size() ? longest.size() : 0;
}

std::string shownLine(std::string_view bytes) {
    if (bytes.ends_with('\n')) {
        bytes.remove_suffix(1);
        if (bytes.ends_with('\r')) bytes.remove_suffix(1);
    }
    return displayText(bytes);
}

}  // namespace

void HistoryLines::addFile(std::unique_ptr<ReadableFile> file) {
    Section section;
    section.file = std::move(file);
    section.firstLine = size();
    sections_.push_back(std::move(section));
}

// Each piece begins with the line that the one before it did not hold whole.
Result<bool> HistoryLines::takePiece() {
    Section& section = sections_.back();
    piece_.resize(kPiece);
    const Result<std::size_t> got = section.file->readAt(section.end, piece_);
    if (!got.ok()) return got.fault();
    const bool isAll = got.value() < piece_.size();
    std::string_view rest(piece_.data(), got.value());
    while (!rest.empty()) {
        const std::size_t length = lengthOfLine(rest, isAll);
        if (length == 0) break;
        addLine(section, rest.substr(0, length));
        rest.remove_prefix(length);
    }
    return !isAll;
}

void HistoryLines::addLine(Section& section, std::string_view bytes) {
    widest_.add(section.firstLine + section.lines, bytes);
    if (section.lines % kBlock == 0) section.blockBegins.push_back(section.end);
    section.end += bytes.size();
    ++section.lines;
    if (lastBlockFirstLine_ != SIZE_MAX && lastBlock_.size() < kBlock) lastBlockFirstLine_ = SIZE_MAX;
}

void HistoryLines::clear() {
    sections_.clear();
    piece_ = {};
    widest_.clear();
    lastBlockFirstLine_ = SIZE_MAX;
}

void HistoryLines::setByteWidths(const ByteWidths& widths) {
    widest_.setByteWidths(widths, size() == 0 ? std::string() : line(widest_.index()));
}

std::size_t HistoryLines::size() const {
    return sections_.empty() ? 0 : sections_.back().firstLine + sections_.back().lines;
}

const HistoryLines::Section& HistoryLines::sectionOf(std::size_t index) const {
    // A file without lines begins where the next one does, and is passed over.
    const auto behind = std::upper_bound(sections_.begin(), sections_.end(), index,
                                         [](std::size_t line, const Section& one) { return line < one.firstLine; });
    return *std::prev(behind);
}

std::string HistoryLines::line(std::size_t index) const {
    if (index < lastBlockFirstLine_ || index - lastBlockFirstLine_ >= lastBlock_.size()) {
        const Section& section = sectionOf(index);
        const std::size_t block = (index - section.firstLine) / kBlock;
        lastBlock_ = readBlock(section, block);
        lastBlockFirstLine_ = section.firstLine + block * kBlock;
    }
    return lastBlock_[index - lastBlockFirstLine_];
}

std::vector<std::string> HistoryLines::linesFrom(std::size_t index) const {
    const Section& section = sectionOf(index);
    const std::size_t within = index - section.firstLine;
    std::vector<std::string> lines = readBlock(section, within / kBlock);
    lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(within % kBlock));
    return lines;
}

std::vector<std::string> HistoryLines::readBlock(const Section& section, std::size_t block) const {
    const bool isLast = block + 1 == section.blockBegins.size();
    const std::uint64_t begin = section.blockBegins[block];
    std::string bytes((isLast ? section.end : section.blockBegins[block + 1]) - begin, '\0');
    const Result<std::size_t> read = section.file->readAt(begin, bytes);
    const std::size_t got = read.ok() ? read.value() : 0;
    std::string_view rest = std::string_view(bytes).substr(0, got);
    const std::size_t count = isLast ? section.lines - block * kBlock : kBlock;
    std::vector<std::string> lines;
    while (!rest.empty() && lines.size() < count) {
        const std::size_t length = lengthOfLine(rest, true);
        lines.push_back(shownLine(rest.substr(0, length)));
        rest.remove_prefix(length);
    }
    lines.resize(count, kCannotBeRead);  // somebody has cut the file meanwhile
    return lines;
}

}  // namespace vantrell
