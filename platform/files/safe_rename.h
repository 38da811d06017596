// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/files/unique_fd.h"

namespace vantrell {

/// Gives a regular file another name; what stands under that name is never replaced (EEXIST). 0 or the error number;
/// with one, nothing has changed.
[[nodiscard]] int renameNoReplace(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                                  const std::string& to);

}  // namespace vantrell
