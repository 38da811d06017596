// SPDX-License-Identifier: MIT
#include "platform/files/posix_data_files.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/files/folder_flush.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"
#include "platform/files/safe_rename.h"
#include "platform/files/second_name.h"

namespace vantrell {

namespace {

constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateFolder = 0700;
constexpr int kOpenSafely = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

Fault notRegular(const Path& path) { return {FaultKind::other, path + ": is no regular file"}; }

Result<> mayBeReplaced(Kernel& kernel, const Path& path) {
    struct stat status {};
    const int error = kernel.fstatat(AT_FDCWD, path.c_str(), status, AT_SYMLINK_NOFOLLOW);
    if (error != 0) return resultFromErrno(error == ENOENT ? 0 : error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    return resultFromErrno(kernel.faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS), path);
}

Result<> makeOneFolder(Kernel& kernel, const Path& path) {
    if (folderAt(kernel, path)) return {};
    const int error = kernel.mkdirat(AT_FDCWD, path.c_str(), kPrivateFolder);
    if (error == 0) return flushFolderNow(kernel, folderOf(path));
    return resultFromErrno(error == EEXIST && folderAt(kernel, path) ? 0 : error, path);
}

}  // namespace

Result<std::string> PosixDataFiles::read(const Path& path, std::size_t limit) const {
    const UniqueFd file = openPath(kernel_, path, O_RDONLY | kOpenSafely);
    struct stat status {};
    const int error = file ? file.status(status) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    std::string bytes(std::min(static_cast<std::size_t>(status.st_size), limit), '\0');
    const Result<std::size_t> got = readAt(file, bytes, 0, path);
    if (!got.ok()) return got.fault();
    bytes.resize(got.value());
    return bytes;
}

Result<> PosixDataFiles::writeAtomically(const Path& path, std::string_view bytes) {
    if (Result<> done = mayBeReplaced(kernel_, path); !done.ok()) return done.fault();
    return vantrell::writeAtomically(kernel_, path, bytes, kPrivateFile);
}

Result<> PosixDataFiles::remove(const Path& path) {
    const int error = kernel_.unlinkat(AT_FDCWD, path.c_str(), 0);
    if (error != 0) return resultFromErrno(error == ENOENT ? 0 : error, path);
    return flushFolderNow(kernel_, folderOf(path));
}

Result<> PosixDataFiles::writeNew(const Path& path, std::string_view bytes) {
    return vantrell::writeNew(kernel_, path, bytes, kPrivateFile);
}

Result<> PosixDataFiles::setAside(const Path& path, const Path& newName) {
    const bool isBareName = newName.find(kPathSeparator) == Path::npos;
    const Result<Place> from = openPlace(kernel_, path);
    if (!from.ok()) return from.fault();
    const Result<Place> to = openPlace(kernel_, isBareName ? joinPath(folderOf(path), newName) : newName);
    if (!to.ok()) return to.fault();
    const int error = renameNoReplace(from.value().folder, from.value().name, to.value().folder, to.value().name);
    if (error != 0) return faultFromErrno(error, newName);
    return flushFolderNow(kernel_, folderOf(path));
}

Result<> PosixDataFiles::keepCopy(const Path& path, const Path& newName) {
    const Result<Place> place = openPlace(kernel_, path);
    if (!place.ok()) return place.fault();
    if (Result<> kept = keepSecondName(place.value(), nameOf(newName)); !kept.ok()) return kept.fault();
    return flushFolderNow(kernel_, folderOf(path));
}

Result<> PosixDataFiles::makePrivateFolders(const Path& path) {
    for (std::size_t end = 0; end != Path::npos;) {
        end = path.find(kPathSeparator, end + 1);
        if (Result<> done = makeOneFolder(kernel_, path.substr(0, end)); !done.ok()) return done.fault();
    }
    return {};
}

// What cannot be opened may have no rights for others all the same; a link's own rights mean nothing.
Result<> PosixDataFiles::makePrivate(const Path& path) {
    constexpr mode_t kOthers = S_IRWXG | S_IRWXO;
    struct stat status {};
    int error = statusOf(kernel_, path, status);
    if (error == ENOENT || (error == 0 && (S_ISLNK(status.st_mode) || (status.st_mode & kOthers) == 0))) return {};
    const UniqueFd open = openPath(kernel_, path, O_RDONLY | kOpenSafely);
    error = open ? open.status(status) : open.error();
    if (error == 0) error = kernel_.fchmod(open.get(), status.st_mode & 07777U & ~kOthers);
    if (error == 0) error = open.status(status);
    // Some file systems keep no permissions and say nothing.
    if (error == 0 && (status.st_mode & kOthers) != 0) error = EOPNOTSUPP;
    return resultFromErrno(error, path);
}

}  // namespace vantrell
