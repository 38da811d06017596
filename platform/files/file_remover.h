// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/disposer.h"

namespace vantrell {

/// Removes the regular file under the path, provided that its date (`fileDateAt`) is still the given one. The name has
/// gone, or not, before the task first waits. `disposer` outlives the task.
Task<Result<>> removeDatedFile(EventLoop& loop, Kernel& kernel, Disposer& disposer, Path path, FileDate date);

}  // namespace vantrell
