// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/event_loop.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// What FileToolbox::search promises.
Task<std::vector<Path>> searchFolder(EventLoop& loop, SearchOrder order);

}  // namespace vantrell
