// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"
#include "core/program_state.h"

namespace vantrell {

/// The settings and the password store, in AppFolder and under the same names in each backup.
inline constexpr char kSettingsFileName[] = "ZEP.cfg";
inline constexpr char kPasswordFileName[] = "EDPasswords.mdb";
/// The table in it.
inline constexpr char kPasswordTableName[] = "EncDecPasswords";

/// AppFolder: where the program keeps its own files below a profile folder (`Host::profileFolder`). The helper
/// programs look for it in the same way.
[[nodiscard]] inline Path appFolderBelow(Path profileFolder) {
    for (const char* level : {kCompanyName, kProductName, "Bin"}) (profileFolder += kPathSeparator) += level;
    return profileFolder;
}

}  // namespace vantrell
