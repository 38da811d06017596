// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/files/unique_fd.h"

namespace vantrell {

/// Gives a regular file another name; what stands under that name is never replaced (EEXIST). 0 or the error number;
/// with one, nothing has changed. Where the file system cannot do it in one step, it is linked first; so the old name
/// has to be one into whose place nobody else puts a file.
[[nodiscard]] int renameNoReplace(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                                  const std::string& to);

/// The one step alone.
[[nodiscard]] int renameInOneStep(const UniqueFd& fromFolder, const std::string& from, const UniqueFd& toFolder,
                                  const std::string& to);
/// Whether that error says that the file system cannot do it.
[[nodiscard]] bool needsTwoSteps(int error);

}  // namespace vantrell
