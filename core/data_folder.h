// SPDX-License-Identifier: MIT
#pragma once

#include "core/program_state.h"
#include "platform/path.h"

namespace vantrell {

/// AppFolder: where the program keeps its own files below a profile folder (`Host::profileFolder`). The helper
/// programs look for it in the same way.
[[nodiscard]] inline Path appFolderBelow(Path profileFolder) {
    for (const char* level : {kCompanyName, kProductName, "Bin"}) (profileFolder += kPathSeparator) += level;
    return profileFolder;
}

}  // namespace vantrell
