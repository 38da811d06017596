// SPDX-License-Identifier: MIT
#include "platform/files/folder_listing.h"

#include <utility>

#include "platform/files/folder_reader.h"
#include "platform/files/place.h"

namespace vantrell {

namespace {

bool isListed(const FolderEntry& entry) { return !entry.isFolder && !entry.key.starts_with('.'); }

}  // namespace

Task<std::vector<Path>> listFolder(EventLoop& loop, Kernel& kernel, Path folder) {
    std::vector<Path> names;
    const UniqueFd opened = openFolder(kernel, folder);
    if (!opened) co_return names;
    std::vector<FolderEntry> entries;
    const IsStopped never;
    static_cast<void>(co_await readFolder(loop, opened, entries, never));
    co_await sortByKey(loop, entries);
    for (FolderEntry& entry : entries) {
        if (isListed(entry)) names.push_back(std::move(entry.key));
        co_await loop.breathe();
    }
    co_await release(loop, std::move(entries));
    co_return names;
}

}  // namespace vantrell
