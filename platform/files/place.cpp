// SPDX-License-Identifier: MIT
#include "platform/files/place.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr int kReadFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

UniqueFd openLevelByLevel(const Path& path) {
    UniqueFd folder(::open(path.starts_with(kPathSeparator) ? "/" : ".", kFolderFlags));
    for (std::size_t begin = 0; folder && begin < path.size();) {
        const auto end = std::min(path.find(kPathSeparator, begin), path.size());
        if (end > begin)
            folder = UniqueFd(::openat(folder.get(), path.substr(begin, end - begin).c_str(), kFolderFlags));
        begin = end + 1;
    }
    return folder;
}

}  // namespace

int Place::status(struct stat& into) const {
    return ::fstatat(folder.get(), name.c_str(), &into, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

UniqueFd openFolder(const Path& path) {
    UniqueFd folder(::open(path.c_str(), kFolderFlags));
    if (!folder && errno == ENAMETOOLONG) return openLevelByLevel(path);
    return folder;
}

Result<Place> openPlace(const Path& path) {
    std::string name = nameOf(path);
    if (name.empty() || name == "." || name == "..") return Fault{FaultKind::other, "The path does not name a file"};
    UniqueFd folder = openFolder(folderOf(path));
    if (!folder) return faultFromErrno(errno, "The folder cannot be opened");
    return Place{std::move(folder), std::move(name)};
}

UniqueFd openForReading(const Path& path) {
    UniqueFd file(::open(path.c_str(), kReadFlags));
    if (file || errno != ENAMETOOLONG) return file;
    const UniqueFd folder = openFolder(folderOf(path));
    return folder ? UniqueFd(::openat(folder.get(), nameOf(path).c_str(), kReadFlags)) : UniqueFd();
}

int statusOf(const Path& path, struct stat& into) {
    if (::lstat(path.c_str(), &into) == 0) return 0;
    if (errno != ENAMETOOLONG) return errno;
    const UniqueFd folder = openFolder(folderOf(path));
    if (!folder) return errno;
    return ::fstatat(folder.get(), nameOf(path).c_str(), &into, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

}  // namespace vantrell
