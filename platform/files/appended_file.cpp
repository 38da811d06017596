// SPDX-License-Identifier: MIT
#include "platform/files/appended_file.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/files/folder_flush.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/posix_io.h"

namespace vantrell {

namespace {

constexpr mode_t kPrivateFile = 0600;
constexpr int kOpenSafely = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
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

Fault notRegular(const Path& path) { return {FaultKind::other, path + ": is no regular file"}; }

Result<std::size_t> sizeOfRegular(const UniqueFd& file, const Path& path) {
    struct stat status {};
    const int error = file ? file.status(status) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    return static_cast<std::size_t>(status.st_size);
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

}  // namespace

bool AppendedFile::isAsLeft(const Path& path) const {
    struct stat status {};
    return path == path_ && file_ && kernel_.fstatat(AT_FDCWD, path.c_str(), status, AT_SYMLINK_NOFOLLOW) == 0 &&
           identityOf(status) == identity_ && static_cast<std::size_t>(status.st_size) == size_;
}

// Afterwards it ends with a line end.
Result<> AppendedFile::open(const Path& path, bool cutTornEnd) {
    path_.clear();
    bool created = false;
    file_ = openForAppending(kernel_, path, created);
    if (created) {
        notYetInFlushedFolder_.insert(path);
        // What the umask left is not what was asked for.
        if (const int error = kernel_.fchmod(file_.get(), kPrivateFile); error != 0) return faultFromErrno(error, path);
    }
    struct stat status {};
    const int error = file_ ? file_.status(status) : file_.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!S_ISREG(status.st_mode)) return notRegular(path);
    Result<std::size_t> size = static_cast<std::size_t>(status.st_size);
    if (cutTornEnd) size = cutTornPart(file_, path, size.value());
    if (!size.ok()) return size.fault();
    identity_ = identityOf(status);
    size_ = size.value();
    path_ = path;
    return {};
}

Result<> AppendedFile::append(const Path& path, std::string_view lines, bool cutTornEnd) {
    const bool isAtLineEnd = !cutTornEnd && isAsLeft(path);
    if (!isAtLineEnd) {
        if (Result<> opened = open(path, cutTornEnd); !opened.ok()) return opened;
    }
    const Result<bool> endsWell = isAtLineEnd ? Result<bool>(true) : endsInLineEnd(file_, path, size_);
    if (!endsWell.ok()) return endsWell.fault();
    Result<> written;
    if (!endsWell.value()) written = writeAll(file_, kLineEnd, path);
    if (written.ok()) written = writeAll(file_, lines, path);
    if (written.ok()) {
        size_ += lines.size() + (endsWell.value() ? 0 : kLineEnd.size());
        return {};
    }
    Fault fault = written.fault();
    if (!cutTo(file_, path, size_).ok()) fault.text += "; what was written could not be taken back";
    path_.clear();
    return fault;
}

Result<> AppendedFile::cutTornEnd(const Path& path) {
    const UniqueFd file = openPath(kernel_, path, O_RDWR | O_NOFOLLOW | kOpenSafely);
    const Result<std::size_t> size = sizeOfRegular(file, path);
    if (!size.ok()) return size.fault();
    const Result<std::size_t> left = cutTornPart(file, path, size.value());
    if (!left.ok()) return left.fault();
    return left.value() == size.value() ? Result<>() : resultFromErrno(kernel_.fdatasync(file.get()), path);
}

// Through the descriptor that was written to: another one may not be told of what could not be written.
Result<> AppendedFile::flush(const Path& path) {
    const bool isOpen = isAsLeft(path);
    const UniqueFd other = isOpen ? UniqueFd() : openPath(kernel_, path, O_RDONLY | O_NOFOLLOW | kOpenSafely);
    const UniqueFd& file = isOpen ? file_ : other;
    const int error = file ? kernel_.fdatasync(file.get()) : file.error();
    if (error != 0) return faultFromErrno(error, path);
    if (!notYetInFlushedFolder_.contains(path)) return {};
    if (Result<> done = flushFolderNow(kernel_, folderOf(path)); !done.ok()) return done.fault();
    notYetInFlushedFolder_.erase(path);
    return {};
}

}  // namespace vantrell
