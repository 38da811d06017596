// SPDX-License-Identifier: MIT
#include "platform/files/posix_data_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <utility>

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"
#include "platform/files/temporary_name.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

constexpr mode_t kPrivateFile = 0600;
constexpr mode_t kPrivateFolder = 0700;
constexpr int kOpenSafely = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

Fault notRegular(const Path& path) { return {FaultKind::other, path + ": is no regular file"}; }

Result<std::size_t> sizeOfRegular(int descriptor, const Path& path) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return faultFromErrno(errno, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    return static_cast<std::size_t>(status.st_size);
}

Result<> mayBeReplaced(const Path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return resultFromErrno(errno == ENOENT ? 0 : errno, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return faultFromErrno(errno, path);
    return {};
}

Result<> fillNewFile(int file, std::string_view bytes, const Path& path) {
    if (::fchmod(file, kPrivateFile) != 0) return faultFromErrno(errno, path);
    if (Result<> done = writeAll(file, bytes, path); !done.ok()) return done.fault();
    return resultFromErrno(::fsync(file) == 0 ? 0 : errno, path);
}

Fault removeAfter(Fault fault, const Path& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) fault.text += "; " + path + " was left behind";
    return fault;
}

Result<> renameWithoutReplacing(const Path& from, const Path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return faultFromErrno(errno, to);
    if (::link(from.c_str(), to.c_str()) != 0) return faultFromErrno(errno, to);
    return resultFromErrno(::unlink(from.c_str()) == 0 ? 0 : errno, from);
}

// Where the last line that was ended begins to be followed by something else; looked for from the end backwards.
Result<std::size_t> endOfLastWholeLine(int file, const Path& path, std::size_t size) {
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

Result<> cutTo(int file, const Path& path, std::size_t size) {
    while (::ftruncate(file, static_cast<off_t>(size)) != 0)
        if (errno != EINTR) return faultFromErrno(errno, path);
    return {};
}

// The value: the size that is left.
Result<std::size_t> cutAfterLastWholeLine(int file, const Path& path, std::size_t size) {
    Result<std::size_t> end = endOfLastWholeLine(file, path, size);
    if (!end.ok() || end.value() == size) return end;
    if (Result<> done = cutTo(file, path, end.value()); !done.ok()) return done.fault();
    return end;
}

// Opens for appending; `created` says that no file stood there.
UniqueFd openForAppending(const Path& path, bool& created) {
    constexpr int kFlags = O_RDWR | O_APPEND | O_NOFOLLOW | kOpenSafely;
    created = false;
    UniqueFd file(::open(path.c_str(), kFlags));
    if (file || errno != ENOENT) return file;
    file = UniqueFd(::open(path.c_str(), kFlags | O_CREAT | O_EXCL, kPrivateFile));
    created = static_cast<bool>(file);
    return file;
}

bool isFolder(const Path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Result<> makeOneFolder(const Path& path) {
    if (isFolder(path)) return {};
    if (::mkdir(path.c_str(), kPrivateFolder) == 0) return flushFolder(folderOf(path));
    const int error = errno;
    return resultFromErrno(error == EEXIST && isFolder(path) ? 0 : error, path);
}

}  // namespace

Result<std::string> PosixDataFiles::read(const Path& path, std::size_t limit) const {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | kOpenSafely));
    if (!file) return faultFromErrno(errno, path);
    const Result<std::size_t> size = sizeOfRegular(file.get(), path);
    if (!size.ok()) return size.fault();
    std::string bytes(std::min(size.value(), limit), '\0');
    const Result<std::size_t> got = readAt(file.get(), bytes, 0, path);
    if (!got.ok()) return got.fault();
    bytes.resize(got.value());
    return bytes;
}

Result<> PosixDataFiles::writeAtomically(const Path& path, std::string_view bytes) {
    if (Result<> done = mayBeReplaced(path); !done.ok()) return done.fault();
    const Path folder = folderOf(path);
    const Path temporary = joinPath(folder, makeTemporaryName());
    const UniqueFd file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPrivateFile));
    if (!file) return faultFromErrno(errno, temporary);
    if (Result<> done = fillNewFile(file.get(), bytes, temporary); !done.ok())
        return removeAfter(done.fault(), temporary);
    if (::rename(temporary.c_str(), path.c_str()) != 0) return removeAfter(faultFromErrno(errno, path), temporary);
    return flushFolder(folder);
}

Result<> PosixDataFiles::setAside(const Path& path, const Path& newName) {
    const Path folder = folderOf(path);
    const bool isBareName = newName.find(kPathSeparator) == Path::npos;
    const Path target = isBareName ? joinPath(folder, newName) : newName;
    if (Result<> done = renameWithoutReplacing(path, target); !done.ok()) return done.fault();
    return flushFolder(folder);
}

Result<> PosixDataFiles::appendLines(const Path& path, std::string_view lines, bool cutTornLine) {
    bool created = false;
    const UniqueFd file = openForAppending(path, created);
    if (!file) return faultFromErrno(errno, path);
    if (created) notYetInFlushedFolder_.insert(path);
    if (created && ::fchmod(file.get(), kPrivateFile) != 0) return faultFromErrno(errno, path);
    Result<std::size_t> size = sizeOfRegular(file.get(), path);
    if (size.ok() && cutTornLine) size = cutAfterLastWholeLine(file.get(), path, size.value());
    if (!size.ok()) return size.fault();
    const Result<> written = writeAll(file.get(), lines, path);
    if (written.ok()) return {};
    Fault fault = written.fault();
    if (!cutTo(file.get(), path, size.value()).ok()) fault.text += "; what was written could not be taken back";
    return fault;
}

Result<> PosixDataFiles::flush(const Path& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | kOpenSafely));
    if (!file || ::fdatasync(file.get()) != 0) return faultFromErrno(errno, path);
    if (!notYetInFlushedFolder_.contains(path)) return {};
    if (Result<> done = flushFolder(folderOf(path)); !done.ok()) return done.fault();
    notYetInFlushedFolder_.erase(path);
    return {};
}

Result<> PosixDataFiles::makePrivateFolders(const Path& path) {
    for (std::size_t end = 0; end != Path::npos;) {
        end = path.find(kPathSeparator, end + 1);
        if (Result<> done = makeOneFolder(path.substr(0, end)); !done.ok()) return done.fault();
    }
    return {};
}

}  // namespace vantrell
