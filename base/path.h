// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantrell {

/// A path: exactly the bytes that the host uses for it, in no particular encoding. Only windows and the log decode it.
using Path = std::string;

/// The character between the levels of a path. Under POSIX a name can hold any character but this one and NUL.
inline constexpr char kPathSeparator = '/';

// The one place where paths are taken apart and put together.

/// Everything before the last separator: the root for a path directly below it, "." where there is no separator.
[[nodiscard]] inline Path folderOf(std::string_view path) {
    const auto cut = path.rfind(kPathSeparator);
    if (cut == std::string_view::npos) return ".";
    return cut == 0 ? Path(1, kPathSeparator) : Path(path.substr(0, cut));
}

/// What follows the last separator; the whole text where there is none.
[[nodiscard]] inline std::string nameOf(std::string_view path) {
    const auto cut = path.rfind(kPathSeparator);
    return std::string(cut == std::string_view::npos ? path : path.substr(cut + 1));
}

/// The folder's path, a separator and the name.
[[nodiscard]] inline Path joinPath(const Path& folder, std::string_view name) {
    return folder + kPathSeparator + std::string(name);
}

}  // namespace vantrell
