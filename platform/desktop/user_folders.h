// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"

namespace vantrell {

// The user's folders after the XDG base directories. They need not exist.

/// $XDG_DATA_HOME when it is absolute, else .local/share in the home folder.
[[nodiscard]] Path userDataFolder();
/// $XDG_CONFIG_HOME when it is absolute, else .config in the home folder.
[[nodiscard]] Path userConfigFolder();
/// $TMPDIR when it is absolute, else /tmp.
[[nodiscard]] Path temporaryFolder();

}  // namespace vantrell
