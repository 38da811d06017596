// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "base/path.h"
#include "platform/event_loop.h"
#include "task/task.h"

namespace vantrell {

/// Names of the regular files of a folder (one that a link leads to, too) that are not hidden, ascending by bytes.
Task<std::vector<Path>> listFolder(EventLoop& loop, Path folder);

}  // namespace vantrell
