// SPDX-License-Identifier: MIT
#include "platform/files/place.h"

#include <algorithm>

#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int kReadFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

UniqueFd openLevelByLevel(Kernel& kernel, const Path& path) {
    UniqueFd folder = openPath(kernel, path.starts_with(kPathSeparator) ? "/" : ".", kFolderFlags);
    for (std::size_t begin = 0; folder && begin < path.size();) {
        const auto end = std::min(path.find(kPathSeparator, begin), path.size());
        if (end > begin) folder = folder.open(path.substr(begin, end - begin).c_str(), kFolderFlags);
        begin = end + 1;
    }
    return folder;
}

}  // namespace

UniqueFd openPath(Kernel& kernel, const Path& path, int flags, mode_t mode) {
    return {kernel, kernel.openat(AT_FDCWD, path.c_str(), flags, mode)};
}

UniqueFd openFolder(Kernel& kernel, const Path& path) {
    UniqueFd folder = openPath(kernel, path, kFolderFlags);
    return folder.error() == ENAMETOOLONG ? openLevelByLevel(kernel, path) : std::move(folder);
}

Result<Place> openPlace(Kernel& kernel, const Path& path) { return placeIn(openFolder(kernel, folderOf(path)), path); }

Result<Place> placeIn(UniqueFd folder, const Path& path) {
    std::string name = nameOf(path);
    if (name.empty() || name == "." || name == "..") return Fault{FaultKind::other, "The path does not name a file"};
    if (!folder) return outputFault(folder.error(), "The folder cannot be opened");
    return Place{std::move(folder), std::move(name)};
}

UniqueFd openForReading(Kernel& kernel, const Path& path) {
    UniqueFd file = openPath(kernel, path, kReadFlags);
    if (file.error() != ENAMETOOLONG) return file;
    UniqueFd folder = openFolder(kernel, folderOf(path));
    return folder ? folder.open(nameOf(path).c_str(), kReadFlags) : std::move(folder);
}

// A name that is longer than its file system allows is known not to be there.
int statusOf(Kernel& kernel, const Path& path, struct stat& into) {
    int error = kernel.fstatat(AT_FDCWD, path.c_str(), into, AT_SYMLINK_NOFOLLOW);
    if (error != ENAMETOOLONG) return error;
    const UniqueFd folder = openFolder(kernel, folderOf(path));
    error = folder ? folder.statusOf(nameOf(path).c_str(), into) : folder.error();
    return error == ENAMETOOLONG ? ENOENT : error;
}

std::optional<FileIdentity> folderAt(Kernel& kernel, const Path& path) {
    struct stat status {};
    if (kernel.fstatat(AT_FDCWD, path.c_str(), status, 0) != 0 || !S_ISDIR(status.st_mode)) return std::nullopt;
    return identityOf(status);
}

}  // namespace vantrell
