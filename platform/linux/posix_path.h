// SPDX-License-Identifier: MIT
#pragma once

#include "platform/path.h"

namespace vantrell {

/// The folder in which a path's last level stands; "." for a bare name.
[[nodiscard]] inline Path folderOf(const Path& path) {
    const auto end = path.find_last_of(kPathSeparator);
    if (end == Path::npos) return ".";
    return end == 0 ? Path(1, kPathSeparator) : path.substr(0, end);
}

}  // namespace vantrell
