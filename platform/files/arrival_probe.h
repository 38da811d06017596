// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"
#include "platform/files/file_system.h"

namespace vantrell {

/// As FileToolbox::tellsArrival. Makes a file in the folder, which is gone again when it returns.
[[nodiscard]] bool folderTellsArrival(Kernel& kernel, FileSystems& systems, const Path& folder);

}  // namespace vantrell
