// SPDX-License-Identifier: MIT
#include "platform/files/posix_data_files.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/files/folder_flush.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"
#include "platform/files/safe_rename.h"

namespace vantrell {

namespace {

constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateFolder = 0700;
constexpr int kOpenSafely = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

Fault notRegular(const Path& path) { return {FaultKind::other, path + ": is no regular file"}; }

Result<std::size_t> sizeOfRegular(const UniqueFd& file, const Path& path) {
    struct stat status {};
    const int error = file ? file.status(status) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    return static_cast<std::size_t>(status.st_size);
}

Result<> mayBeReplaced(Kernel& kernel, const Path& path) {
    struct stat status {};
    const int error = kernel.fstatat(AT_FDCWD, path.c_str(), status, AT_SYMLINK_NOFOLLOW);
    if (error != 0) return resultFromErrno(error == ENOENT ? 0 : error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    return resultFromErrno(kernel.faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS), path);
}

// The place behind the last line feed: what follows there is a line that was not written to its end. The file is read
// from its end backwards, since the line is nearly always short.
Result<std::size_t> endOfLastWholeLine(const UniqueFd& file, const Path& path, std::size_t size) {
    std::array<char, 65536> piece;
    for (std::size_t end = size; end > 0;) {
        const std::size_t begin = end - std::min(end, piece.size());
        const Result<std::size_t> got = readAt(file, {piece.data(), end - begin}, begin, path);
        if (!got.ok()) return got.fault();
        const auto lineFeed = std::string_view(piece.data(), got.value()).find_last_of('\n');
        if (lineFeed != std::string_view::npos) return begin + lineFeed + 1;
        end = begin;
    }
    return std::size_t{0};
}

Result<> cutTo(const UniqueFd& file, const Path& path, std::size_t size) {
    int error = EINTR;
    while (error == EINTR) error = file.kernel().ftruncate(file.get(), static_cast<off_t>(size));
    return resultFromErrno(error, path);
}

// The value: the size that is left.
Result<std::size_t> cutAfterLastWholeLine(const UniqueFd& file, const Path& path, std::size_t size) {
    Result<std::size_t> end = endOfLastWholeLine(file, path, size);
    if (!end.ok() || end.value() == size) return end;
    if (Result<> done = cutTo(file, path, end.value()); !done.ok()) return done.fault();
    return end;
}

// Opens for appending; `created` says that no file stood there.
UniqueFd openForAppending(Kernel& kernel, const Path& path, bool& created) {
    constexpr int kFlags = O_RDWR | O_APPEND | O_NOFOLLOW | kOpenSafely;
    created = false;
    UniqueFd file = openPath(kernel, path, kFlags);
    if (file.error() != ENOENT) return file;
    file = openPath(kernel, path, kFlags | O_CREAT | O_EXCL, kPrivateFile);
    created = static_cast<bool>(file);
    return file;
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
    const Result<std::size_t> size = sizeOfRegular(file, path);
    if (!size.ok()) return size.fault();
    std::string bytes(std::min(size.value(), limit), '\0');
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

Result<> PosixDataFiles::appendLines(const Path& path, std::string_view lines, bool cutTornLine) {
    bool created = false;
    const UniqueFd file = openForAppending(kernel_, path, created);
    if (created) {
        notYetInFlushedFolder_.insert(path);
        // What the umask left is not what was asked for.
        if (const int error = kernel_.fchmod(file.get(), kPrivateFile); error != 0) return faultFromErrno(error, path);
    }
    Result<std::size_t> size = sizeOfRegular(file, path);
    if (size.ok() && cutTornLine) size = cutAfterLastWholeLine(file, path, size.value());
    if (!size.ok()) return size.fault();
    const Result<> written = writeAll(file, lines, path);
    if (written.ok()) return {};
    Fault fault = written.fault();
    if (!cutTo(file, path, size.value()).ok()) fault.text += "; what was written could not be taken back";
    return fault;
}

Result<> PosixDataFiles::flush(const Path& path) {
    const UniqueFd file = openPath(kernel_, path, O_RDONLY | O_NOFOLLOW | kOpenSafely);
    const int error = file ? kernel_.fdatasync(file.get()) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!notYetInFlushedFolder_.contains(path)) return {};
    if (Result<> done = flushFolderNow(kernel_, folderOf(path)); !done.ok()) return done.fault();
    notYetInFlushedFolder_.erase(path);
    return {};
}

Result<> PosixDataFiles::makePrivateFolders(const Path& path) {
    for (std::size_t end = 0; end != Path::npos;) {
        end = path.find(kPathSeparator, end + 1);
        if (Result<> done = makeOneFolder(kernel_, path.substr(0, end)); !done.ok()) return done.fault();
    }
    return {};
}

}  // namespace vantrell
