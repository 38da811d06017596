// SPDX-License-Identifier: MIT
#pragma once

#include "base/result.h"
#include "platform/event_loop.h"
#include "task/task.h"

namespace vantrell {

/// Brings the names in an open folder to stable storage. File systems that have no such thing are taken at their word.
Task<Result<>> flushFolder(EventLoop& loop, int folder);

}  // namespace vantrell
