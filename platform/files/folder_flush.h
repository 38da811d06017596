// SPDX-License-Identifier: MIT
#pragma once

#include "base/fault.h"
#include "platform/event_loop.h"
#include "task/task.h"

namespace vantrell {

/// Brings the names in an open folder to stable storage. File systems that have no such thing are taken at their word.
Task<FileFault> flushFolder(EventLoop& loop, int folder);

}  // namespace vantrell
