// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "base/path.h"
#include "platform/clock.h"
#include "platform/files/output_parts.h"
#include "task/task.h"

namespace vantrell {

// Both end early when `isStopped` answers True; what is left then is found by the next call.

/// Removes the files under our temporary names, that nobody holds locked, from the top of the folder; large ones in
/// steps. Does nothing when the folder is `neverHere` (they can be made again anywhere else).
Task<void> removeLeftOutputs(OutputParts& parts, Path folder, Path neverHere, std::function<bool()> isStopped);

/// In the folder and below it, moves files out of the private folders of an earlier run back beside them, and removes
/// those folders. Where a file's name is taken, it gets the date and time in front ("yyyymmdd hhmmss_").
Task<void> restoreSources(OutputParts& parts, const Clock& clock, Path folder, std::function<bool()> isStopped);

}  // namespace vantrell
