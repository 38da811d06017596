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

FileFault notRegular(const Path& path) { return {FaultKind::other, path + ": is no regular file"}; }

FileFault sizeOfRegular(int descriptor, const Path& path, std::size_t& size) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return faultFromErrno(errno, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    size = static_cast<std::size_t>(status.st_size);
    return {};
}

FileFault mayBeReplaced(const Path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) return errno == ENOENT ? FileFault{} : faultFromErrno(errno, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    if (::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0) return faultFromErrno(errno, path);
    return {};
}

FileFault fillNewFile(int file, std::string_view bytes, const Path& path) {
    if (::fchmod(file, kPrivateFile) != 0) return faultFromErrno(errno, path);
    if (FileFault fault = writeAll(file, bytes, path)) return fault;
    return ::fsync(file) == 0 ? FileFault{} : faultFromErrno(errno, path);
}

FileFault removeAfter(FileFault fault, const Path& path) {
    if (::unlink(path.c_str()) != 0 && errno != ENOENT) fault.text += "; " + path + " was left behind";
    return fault;
}

FileFault renameWithoutReplacing(const Path& from, const Path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return faultFromErrno(errno, to);
    if (::link(from.c_str(), to.c_str()) != 0) return faultFromErrno(errno, to);
    return ::unlink(from.c_str()) == 0 ? FileFault{} : faultFromErrno(errno, from);
}

// Where the last line that was ended begins to be followed by something else; looked for from the end backwards.
FileFault endOfLastWholeLine(int file, const Path& path, std::size_t size, std::size_t& end) {
    std::array<char, 65536> piece;
    for (end = size; end > 0;) {
        const std::size_t begin = end - std::min(end, piece.size());
        std::size_t got = 0;
        if (FileFault fault = readAt(file, {piece.data(), end - begin}, begin, got, path)) return fault;
        const auto lineFeed = std::string_view(piece.data(), got).find_last_of('\n');
        if (lineFeed != std::string_view::npos) {
            end = begin + lineFeed + 1;
            return {};
        }
        end = begin;
    }
    return {};
}

FileFault cutTo(int file, const Path& path, std::size_t size) {
    while (::ftruncate(file, static_cast<off_t>(size)) != 0)
        if (errno != EINTR) return faultFromErrno(errno, path);
    return {};
}

FileFault cutAfterLastWholeLine(int file, const Path& path, std::size_t& size) {
    std::size_t end = 0;
    if (FileFault fault = endOfLastWholeLine(file, path, size, end)) return fault;
    if (end == size) return {};
    if (FileFault fault = cutTo(file, path, end)) return fault;
    size = end;
    return {};
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

FileFault makeOneFolder(const Path& path) {
    if (isFolder(path)) return {};
    if (::mkdir(path.c_str(), kPrivateFolder) == 0) return flushFolder(folderOf(path));
    const int error = errno;
    return error == EEXIST && isFolder(path) ? FileFault{} : faultFromErrno(error, path);
}

}  // namespace

DataFiles::ReadResult PosixDataFiles::read(const Path& path, std::size_t limit) const {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | kOpenSafely));
    if (!file) return {{}, faultFromErrno(errno, path)};
    std::size_t size = 0;
    if (FileFault fault = sizeOfRegular(file.get(), path, size)) return {{}, std::move(fault)};
    std::string bytes(std::min(size, limit), '\0');
    std::size_t got = 0;
    if (FileFault fault = readAt(file.get(), bytes, 0, got, path)) return {{}, std::move(fault)};
    bytes.resize(got);
    return {std::move(bytes), {}};
}

FileFault PosixDataFiles::writeAtomically(const Path& path, std::string_view bytes) {
    if (FileFault fault = mayBeReplaced(path)) return fault;
    const Path folder = folderOf(path);
    const Path temporary = joinPath(folder, makeTemporaryName());
    const UniqueFd file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPrivateFile));
    if (!file) return faultFromErrno(errno, temporary);
    if (FileFault fault = fillNewFile(file.get(), bytes, temporary)) return removeAfter(std::move(fault), temporary);
    if (::rename(temporary.c_str(), path.c_str()) != 0) return removeAfter(faultFromErrno(errno, path), temporary);
    return flushFolder(folder);
}

FileFault PosixDataFiles::setAside(const Path& path, const Path& newName) {
    const Path folder = folderOf(path);
    const bool isBareName = newName.find(kPathSeparator) == Path::npos;
    const Path target = isBareName ? joinPath(folder, newName) : newName;
    if (FileFault fault = renameWithoutReplacing(path, target)) return fault;
    return flushFolder(folder);
}

FileFault PosixDataFiles::appendLines(const Path& path, std::string_view lines, bool cutTornLine) {
    bool created = false;
    const UniqueFd file = openForAppending(path, created);
    if (!file) return faultFromErrno(errno, path);
    if (created) notYetInFlushedFolder_.insert(path);
    if (created && ::fchmod(file.get(), kPrivateFile) != 0) return faultFromErrno(errno, path);
    std::size_t size = 0;
    if (FileFault fault = sizeOfRegular(file.get(), path, size)) return fault;
    if (cutTornLine)
        if (FileFault fault = cutAfterLastWholeLine(file.get(), path, size)) return fault;
    FileFault fault = writeAll(file.get(), lines, path);
    if (!fault) return {};
    if (FileFault uncut = cutTo(file.get(), path, size)) fault.text += "; what was written could not be taken back";
    return fault;
}

FileFault PosixDataFiles::flush(const Path& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | kOpenSafely));
    if (!file || ::fdatasync(file.get()) != 0) return faultFromErrno(errno, path);
    if (!notYetInFlushedFolder_.contains(path)) return {};
    if (FileFault fault = flushFolder(folderOf(path))) return fault;
    notYetInFlushedFolder_.erase(path);
    return {};
}

FileFault PosixDataFiles::makePrivateFolders(const Path& path) {
    for (std::size_t end = 0; end != Path::npos;) {
        end = path.find(kPathSeparator, end + 1);
        if (FileFault fault = makeOneFolder(path.substr(0, end))) return fault;
    }
    return {};
}

}  // namespace vantrell
