// SPDX-License-Identifier: MIT
#include "platform/files/spilled_lines.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/files/nameless_support.h"
#include "platform/files/place.h"
#include "platform/files/posix_io.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

constexpr std::size_t kBlock = 64;
/// So many lines go into the file at once.
constexpr std::size_t kStep = 16 * kBlock;
constexpr char kCannotBeRead[] = "(this line cannot be read again)";
constexpr char kWhat[] = "the file of older lines";

using Length = std::uint32_t;

UniqueFd openIn(Kernel& kernel, const Path& folder) {
    UniqueFd place = openFolder(kernel, folder);
    if (!place) return place;
    if (UniqueFd file = openNameless(place); file) return file;
    const std::string name = makeTemporaryName(kernel);
    UniqueFd file = place.open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file && place.unlink(name.c_str()) != 0) file.reset();
    return file;
}

void put(std::string& bytes, const std::string& line) {
    const auto length = static_cast<Length>(line.size());
    std::array<char, sizeof length> head;
    std::memcpy(head.data(), &length, head.size());
    bytes.append(head.data(), head.size()).append(line);
}

std::vector<std::string> take(std::string_view bytes) {
    std::vector<std::string> lines;
    for (Length length = 0; bytes.size() >= sizeof length; bytes.remove_prefix(length)) {
        std::memcpy(&length, bytes.data(), sizeof length);
        bytes.remove_prefix(sizeof length);
        if (bytes.size() < length) break;
        lines.emplace_back(bytes.substr(0, length));
    }
    return lines;
}

}  // namespace

void SpilledLines::append(std::string_view line) {
    recent_.emplace_back(line);
    if (recent_.size() >= spillAt_) spill();
}

// After a failure the next attempt waits for as many lines more, so that a full disk does not cost time at every line.
void SpilledLines::spill() {
    std::vector<std::uint64_t> ends;
    if (!openFile() || !writeBlocks(kStep, ends).ok()) {
        spillAt_ = recent_.size() + kStep;
        return;
    }
    blockEnds_.insert(blockEnds_.end(), ends.begin(), ends.end());
    recent_.erase(recent_.begin(), recent_.begin() + kStep);
    spilled_ += kStep;
    // What a full disk kept in memory follows in steps, one at each of the next lines.
    spillAt_ = std::max(kLinesInMemory, recent_.size() + 1);
}

bool SpilledLines::openFile() {
    if (!file_) file_ = openIn(kernel_, folder_);
    if (!file_) file_ = openIn(kernel_, otherFolder_);
    return static_cast<bool>(file_);
}

// A write that fails half way is written over by the next attempt: the place is the end of the last whole block.
Result<> SpilledLines::writeBlocks(std::size_t lines, std::vector<std::uint64_t>& ends) {
    const std::uint64_t begin = blockEnds_.empty() ? 0 : blockEnds_.back();
    std::string bytes;
    for (std::size_t i = 0; i < lines; ++i) {
        put(bytes, recent_[i]);
        if ((i + 1) % kBlock == 0) ends.push_back(begin + bytes.size());
    }
    return writeAllAt(file_, bytes, begin, kWhat);
}

std::string SpilledLines::line(std::size_t index) const {
    if (index >= spilled_) return recent_[index - spilled_];
    return loadBlock(index / kBlock) ? block_[index % kBlock] : kCannotBeRead;
}

bool SpilledLines::loadBlock(std::size_t block) const {
    if (block == blockNumber_) return true;
    blockNumber_ = SIZE_MAX;
    const std::uint64_t begin = block == 0 ? 0 : blockEnds_[block - 1];
    std::string bytes(blockEnds_[block] - begin, '\0');
    const Result<std::size_t> got = readAt(file_, bytes, begin, kWhat);
    if (!got.ok()) return false;
    block_ = take(std::string_view(bytes).substr(0, got.value()));
    if (block_.size() != kBlock) return false;
    blockNumber_ = block;
    return true;
}

}  // namespace vantrell
