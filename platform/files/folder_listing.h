// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/path.h"
#include "platform/event_loop.h"
#include "platform/files/kernel.h"
#include "task/task.h"

namespace vantrell {

/// The names of a folder's regular files that are not hidden, ascending by their bytes. The path may lead to the folder
/// through links. None when the folder cannot be read. The kernel outlives the task.
Task<std::vector<Path>> listFolder(EventLoop& loop, Kernel& kernel, Path folder);

}  // namespace vantrell
