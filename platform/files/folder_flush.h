// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"
#include "base/result.h"
#include "platform/event_loop.h"
#include "platform/files/output_parts.h"
#include "platform/files/unique_fd.h"
#include "task/task.h"

namespace vantrell {

/// Begins to bring an open file, or the names in an open folder, to stable storage. It may be closed at once. What
/// awaiting gives is 0 or the error number.
Pending<int> beginFlush(EventLoop& loop, const UniqueFd& file);

/// Brings an open file to stable storage: contents, size, and how many names it has. It stays open until the task has
/// ended.
Task<Result<>> flushFile(OutputParts& parts, const UniqueFd& file);

// Bring the names in a folder to stable storage. File systems that have no such thing are taken at their word.

/// The folder stays open until the task has ended.
Task<Result<>> flushFolder(OutputParts& parts, const UniqueFd& folder);
/// Holds up the event loop meanwhile. The fault names the folder.
Result<> flushFolderNow(Kernel& kernel, const Path& folder);

}  // namespace vantrell
