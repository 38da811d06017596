// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// A path: exactly the bytes that the host uses for it, in no particular encoding. Only windows and the log decode it.
using Path = std::string;

/// What stands between the levels of a path (POSIX: the only character besides NUL that a name cannot hold).
inline constexpr char kPathSeparator = '/';

/// The folder of a path with at least one separator.
inline Path folderOfPath(const Path& path) { return path.substr(0, path.rfind(kPathSeparator)); }

}  // namespace vantrell
