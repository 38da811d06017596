// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/path.h"
#include "platform/library_versions.h"

namespace vantrell {

/// What the About window says. The window itself adds the version of Qt.
struct AboutFacts {
    std::string title;
    std::string version;
    std::vector<LibraryVersion> libraries;
    Path dataFolder;
};

/// The version of this program, as it was built.
[[nodiscard]] std::string programVersion();

}  // namespace vantrell
