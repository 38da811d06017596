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

constexpr std::string_view kLineEnd = "\r\n";
// More than one piece of lines that was being written is not torn.
constexpr std::size_t kMostTorn = std::size_t{64} << 10U;

// The last bytes of a file.
Result<std::string> tailOf(const UniqueFd& file, const Path& path, std::size_t size, std::size_t most) {
    std::string tail(std::min(size, most), '\0');
    const Result<std::size_t> got = readAt(file, tail, size - tail.size(), path);
    if (!got.ok()) return got.fault();
    tail.resize(got.value());
    return tail;
}

// How much of the file's end is torn. Zeros, which some file systems leave where lines were not written any more, are a
// torn line like any other.
Result<std::size_t> tornBytes(const UniqueFd& file, const Path& path, std::size_t size) {
    const Result<std::string> tail = tailOf(file, path, size, kMostTorn + kLineEnd.size());
    if (!tail.ok()) return tail.fault();
    const std::size_t last = tail.value().rfind(kLineEnd);
    const bool isAllZeros = tail.value().find_first_not_of('\0') == std::string::npos;
    if (last == std::string::npos) return isAllZeros && size <= kMostTorn ? size : std::size_t{0};
    const std::string_view behind = std::string_view(tail.value()).substr(last + kLineEnd.size());
    return behind.find('\n') == std::string_view::npos ? behind.size() : 0;
}

Result<bool> endsInLineEnd(const UniqueFd& file, const Path& path, std::size_t size) {
    const Result<std::string> tail = tailOf(file, path, size, 1);
    if (!tail.ok()) return tail.fault();
    return tail.value().empty() || tail.value() == "\n";
}

Result<> cutTo(const UniqueFd& file, const Path& path, std::size_t size) {
    int error = EINTR;
    while (error == EINTR) error = file.kernel().ftruncate(file.get(), static_cast<off_t>(size));
    return resultFromErrno(error, path);
}

// The value: the size that is left.
Result<std::size_t> cutTornPart(const UniqueFd& file, const Path& path, std::size_t size) {
    const Result<std::size_t> torn = tornBytes(file, path, size);
    if (!torn.ok() || torn.value() == 0) return torn.ok() ? Result<std::size_t>(size) : torn;
    if (Result<> done = cutTo(file, path, size - torn.value()); !done.ok()) return done.fault();
    return size - torn.value();
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

Result<> PosixDataFiles::appendLines(const Path& path, std::string_view lines, bool cutTornEnd) {
    bool created = false;
    const UniqueFd file = openForAppending(kernel_, path, created);
    if (created) {
        notYetInFlushedFolder_.insert(path);
        // What the umask left is not what was asked for.
        if (const int error = kernel_.fchmod(file.get(), kPrivateFile); error != 0) return faultFromErrno(error, path);
    }
    Result<std::size_t> size = sizeOfRegular(file, path);
    if (size.ok() && cutTornEnd) size = cutTornPart(file, path, size.value());
    if (!size.ok()) return size.fault();
    const Result<bool> atLineEnd = endsInLineEnd(file, path, size.value());
    if (!atLineEnd.ok()) return atLineEnd.fault();
    Result<> written;
    if (!atLineEnd.value()) written = writeAll(file, kLineEnd, path);
    if (written.ok()) written = writeAll(file, lines, path);
    if (written.ok()) return {};
    Fault fault = written.fault();
    if (!cutTo(file, path, size.value()).ok()) fault.text += "; what was written could not be taken back";
    return fault;
}

Result<> PosixDataFiles::cutTornEnd(const Path& path) {
    const UniqueFd file = openPath(kernel_, path, O_RDWR | O_NOFOLLOW | kOpenSafely);
    const Result<std::size_t> size = sizeOfRegular(file, path);
    if (!size.ok()) return size.fault();
    const Result<std::size_t> left = cutTornPart(file, path, size.value());
    if (!left.ok()) return left.fault();
    return left.value() == size.value() ? Result<>() : resultFromErrno(kernel_.fdatasync(file.get()), path);
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
