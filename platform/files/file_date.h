// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

// The later of the birth and the last change of status; the epoch when it cannot be told.

/// Of what stands under the path; links are not followed.
[[nodiscard]] FileDate fileDateAt(Kernel& kernel, const Path& path);
/// Of an open file.
[[nodiscard]] FileDate fileDateOf(const UniqueFd& file);

}  // namespace vantrell
