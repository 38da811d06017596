// SPDX-License-Identifier: MIT
#include "platform/files/move_group.h"

#include "platform/files/folder_flush.h"
#include "platform/files/safe_rename.h"

namespace vantrell {

namespace {

constexpr std::size_t kMostMoves = 256;

}  // namespace

void MoveGroup::add(Moved moved) {
    entries_.push_back({moved.fromFolder, moved.toFolder, std::move(moved.from.name), std::move(moved.to.name),
                        moved.file, moved.hasReplaced});
    targets_.try_emplace(moved.toFolder, std::move(moved.to.folder));
    sources_.try_emplace(moved.fromFolder, std::move(moved.from.folder));
}

bool MoveGroup::isFull() const { return entries_.size() >= kMostMoves; }

Task<Result<>> MoveGroup::flushAll(const Folders& folders) {
    for (const auto& [identity, folder] : folders) {
        const Result<> flushed = co_await flushFolder(parts_, folder);
        if (!flushed.ok()) co_return flushed;
    }
    co_return Result<>();
}

Task<Result<>> MoveGroup::flush() {
    Result<> flushed = co_await flushAll(targets_);
    if (flushed.ok()) flushed = co_await flushAll(sources_);
    if (!flushed.ok()) {
        Fault fault = flushed.fault();
        takeBackAll(fault);
        flushed = fault;
    }
    entries_.clear();
    targets_.clear();
    sources_.clear();
    co_return flushed;
}

void MoveGroup::takeBackAll(Fault& fault) {
    std::size_t left = 0;
    for (const Entry& entry : entries_) left += takeBack(entry) ? 0 : 1;
    if (entries_.empty()) return;
    fault.text += "; the files that were moved last have been taken back";
    if (left > 0) fault.text += ", but for " + std::to_string(left);
}

// What has replaced another file stays: there would be neither of them.
bool MoveGroup::takeBack(const Entry& entry) const {
    const UniqueFd& from = sources_.at(entry.fromFolder);
    const UniqueFd& to = targets_.at(entry.toFolder);
    struct stat standing {};
    return !entry.hasReplaced && to.statusOf(entry.toName.c_str(), standing) == 0 &&
           identityOf(standing) == entry.file && renameNoReplace(to, entry.toName, from, entry.fromName) == 0;
}

}  // namespace vantrell
