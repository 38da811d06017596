// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "platform/files/kernel.h"

namespace vantrell {

/// What FileToolbox::search promises. The kernel outlives the task.
Task<std::vector<Path>> searchFolder(EventLoop& loop, Kernel& kernel, SearchOrder order);

}  // namespace vantrell
