// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// Gives a regular file another name; what stands under that name is never replaced (EEXIST). 0 or the host's error
/// number; with one, nothing has changed.
[[nodiscard]] int renameNoReplace(int fromFolder, const std::string& from, int toFolder, const std::string& to);

}  // namespace vantrell
