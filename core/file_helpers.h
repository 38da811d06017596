// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/file_toolbox.h"

namespace vantrell {

/// What follows the last separator; the whole text when there is none.
[[nodiscard]] std::string FileNameOf(std::string_view path);
/// The extension: what follows the last dot that has 1 to 4 characters after it; "Unknown" when there is no such dot.
[[nodiscard]] std::string ExtensionOf(std::string_view path);

/// True when the path is that of a regular file; False for an empty path.
[[nodiscard]] bool FileExists(const FileToolbox& toolbox, const Path& path);
/// True when there is a folder with this path, and also when there is a file with it.
[[nodiscard]] bool FolderExists(const FileToolbox& toolbox, const Path& path);
/// Takes the read-only attribute off an existing file; says whether the file exists.
bool ClearFileAttributes(FileToolbox& toolbox, const Path& path);

}  // namespace vantrell
