// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/event_loop.h"
#include "platform/files/unique_fd.h"
#include "task/task.h"

namespace vantrell {

struct FolderEntry {
    /// The name; that of a folder ends with the separator, so that comparing keys compares whole paths.
    std::string key;
    bool isFolder = false;
};

/// Asked now and then by long work, which ends early when it answers True. May be empty.
using IsStopped = std::function<bool()>;

inline constexpr char kFolderCannotBeRead[] = "The folder cannot be read";

/// Appends the regular files and the folders of an open folder, in no order. When there is a fault, those that could be
/// read are there. `folder`, `into` and `isStopped` outlive the
/// task.
Task<Result<>> readFolder(EventLoop& loop, const UniqueFd& folder, std::vector<FolderEntry>& into,
                          const IsStopped& isStopped);

/// Sorts ascending by the keys' bytes, also a million of them, without holding up the event loop.
Task<void> sortByKey(EventLoop& loop, std::vector<FolderEntry>& entries);

/// Empties the list likewise.
Task<void> release(EventLoop& loop, std::vector<FolderEntry> entries);

}  // namespace vantrell
