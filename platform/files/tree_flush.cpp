// SPDX-License-Identifier: MIT
#include "platform/files/tree_flush.h"

#include <string>
#include <utility>
#include <vector>

#include "platform/files/folder_descent.h"
#include "platform/files/folder_flush.h"
#include "platform/files/folder_reader.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

using Names = std::vector<std::string>;

// The folders in the current one, after it was flushed.
Task<Result<Names>> flushHere(OutputParts& parts, FolderDescent& descent) {
    const UniqueFd& folder = descent.current();
    if (!folder) co_return faultFromErrno(folder.error(), kFolderCannotBeRead);
    const Result<> flushed = co_await flushFolder(parts, folder);
    if (!flushed.ok()) co_return flushed.fault();
    std::vector<FolderEntry> entries;
    const Result<> read = co_await readFolder(parts.loop, folder, entries, {});
    if (!read.ok()) co_return read.fault();
    Names names;
    for (FolderEntry& entry : entries) {
        if (!entry.isFolder) continue;
        entry.key.pop_back();
        names.push_back(std::move(entry.key));
    }
    co_await release(parts.loop, std::move(entries));
    co_return std::move(names);
}

}  // namespace

Task<Result<>> flushTree(OutputParts& parts, Path folder) {
    FolderDescent descent(parts.kernel, folder);
    if (!descent.topOpened().ok()) co_return descent.topOpened();
    std::vector<Names> levels;
    Result<Names> top = co_await flushHere(parts, descent);
    if (!top.ok()) co_return top.fault();
    levels.push_back(top.take());
    while (!levels.empty()) {
        co_await parts.loop.breathe();
        if (levels.back().empty()) {
            levels.pop_back();
            if (!levels.empty()) descent.leave();
            continue;
        }
        const std::string name = std::move(levels.back().back());
        levels.back().pop_back();
        const Result<> entered = descent.enter(name);
        if (entered.failedWith(FaultKind::notThere) || entered.failedWith(FaultKind::notPermitted)) continue;
        if (!entered.ok()) co_return entered;
        Result<Names> below = co_await flushHere(parts, descent);
        if (!below.ok()) co_return below.fault();
        levels.push_back(below.take());
    }
    co_return Result<>();
}

}  // namespace vantrell
