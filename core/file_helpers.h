// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/file_toolbox.h"

namespace vantrell {

/// What follows the last separator; the whole text when there is none.
[[nodiscard]] std::string FileNameOf(std::string_view path);
/// The 1 to 4 characters behind a dot among the last 2 to 5 characters, tried from the shortest; "Unknown" when there
/// is no dot at one of those places (so also for longer extensions).
[[nodiscard]] std::string ExtensionOf(std::string_view path);

/// Whether a regular file stands there; False for an empty path.
[[nodiscard]] bool FileExists(const FileToolbox& toolbox, const Path& path);
/// Whether a folder stands there; True for a file of that name as well.
[[nodiscard]] bool FolderExists(const FileToolbox& toolbox, const Path& path);
/// Takes the read-only attribute off an existing file; says whether the file exists.
bool ClearFileAttributes(FileToolbox& toolbox, const Path& path);

}  // namespace vantrell
