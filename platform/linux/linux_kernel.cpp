// SPDX-License-Identifier: MIT
#include "platform/linux/linux_kernel.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace vantrell {

namespace {

int errorOf(int answer) { return answer == 0 ? 0 : errno; }

template <class Number>
Number numberOrError(Number answer) {
    return answer < 0 ? static_cast<Number>(-errno) : answer;
}

// The kernel's own path to an open file.
class ProcPath {
public:
    explicit ProcPath(int file) {
        static_cast<void>(std::snprintf(path_.data(), path_.size(), "/proc/self/fd/%d", file));
    }
    [[nodiscard]] const char* get() const { return path_.data(); }

private:
    std::array<char, 32> path_{};
};

}  // namespace

int LinuxKernel::openat(int folder, const char* path, int flags, mode_t mode) {
    return numberOrError(::openat(folder, path, flags, mode));
}

// The C library has no function for it.
int LinuxKernel::openat2(int folder, const char* path, const open_how& how) {
    return static_cast<int>(numberOrError(::syscall(SYS_openat2, folder, path, &how, sizeof how)));
}

ssize_t LinuxKernel::read(int file, std::span<std::byte> into) {
    return numberOrError(::read(file, into.data(), into.size()));
}

ssize_t LinuxKernel::pread(int file, std::span<std::byte> into, off_t offset) {
    return numberOrError(::pread(file, into.data(), into.size(), offset));
}

ssize_t LinuxKernel::write(int file, std::span<const std::byte> bytes) {
    return numberOrError(::write(file, bytes.data(), bytes.size()));
}

ssize_t LinuxKernel::pwrite(int file, std::span<const std::byte> bytes, off_t offset) {
    return numberOrError(::pwrite(file, bytes.data(), bytes.size(), offset));
}

ssize_t LinuxKernel::getdents64(int folder, std::span<std::byte> into) {
    return numberOrError(::getdents64(folder, into.data(), into.size()));
}

ssize_t LinuxKernel::flistxattr(int file, std::span<char> names) {
    return numberOrError(::flistxattr(file, names.data(), names.size()));
}

ssize_t LinuxKernel::fgetxattr(int file, const char* name, std::span<char> value) {
    return numberOrError(::fgetxattr(file, name, value.data(), value.size()));
}

ssize_t LinuxKernel::getrandom(std::span<std::byte> into) {
    return numberOrError(::getrandom(into.data(), into.size(), 0));
}

int LinuxKernel::fstat(int file, struct stat& into) { return errorOf(::fstat(file, &into)); }

int LinuxKernel::fstatat(int folder, const char* path, struct stat& into, int flags) {
    return errorOf(::fstatat(folder, path, &into, flags));
}

int LinuxKernel::statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) {
    return errorOf(::statx(folder, path, flags, mask, &into));
}

int LinuxKernel::fstatfs(int file, struct statfs& into) { return errorOf(::fstatfs(file, &into)); }

int LinuxKernel::faccessat(int folder, const char* path, int mode, int flags) {
    return errorOf(::faccessat(folder, path, mode, flags));
}

int LinuxKernel::linkat(int fromFolder, const char* from, int toFolder, const char* to) {
    return errorOf(::linkat(fromFolder, from, toFolder, to, 0));
}

int LinuxKernel::linkOpenFile(int file, int folder, const char* name) {
    return errorOf(::linkat(AT_FDCWD, ProcPath(file).get(), folder, name, AT_SYMLINK_FOLLOW));
}

int LinuxKernel::renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    // The older call is known to file systems and kernels that do not know the newer one.
    if (flags == 0) return errorOf(::renameat(fromFolder, from, toFolder, to));
    return errorOf(::renameat2(fromFolder, from, toFolder, to, flags));
}

int LinuxKernel::unlinkat(int folder, const char* path, int flags) { return errorOf(::unlinkat(folder, path, flags)); }

int LinuxKernel::mkdirat(int folder, const char* path, mode_t mode) { return errorOf(::mkdirat(folder, path, mode)); }

int LinuxKernel::fsync(int file) { return errorOf(::fsync(file)); }

int LinuxKernel::fdatasync(int file) { return errorOf(::fdatasync(file)); }

int LinuxKernel::ftruncate(int file, off_t size) { return errorOf(::ftruncate(file, size)); }

int LinuxKernel::futimens(int file, const std::array<timespec, 2>& times) {
    return errorOf(::futimens(file, times.data()));
}

int LinuxKernel::fchmod(int file, mode_t mode) { return errorOf(::fchmod(file, mode)); }

int LinuxKernel::chmodOpenFile(int file, mode_t mode) { return errorOf(::chmod(ProcPath(file).get(), mode)); }

int LinuxKernel::fchown(int file, uid_t owner, gid_t group) { return errorOf(::fchown(file, owner, group)); }

int LinuxKernel::fsetxattr(int file, const char* name, std::span<const char> value) {
    return errorOf(::fsetxattr(file, name, value.data(), value.size(), 0));
}

int LinuxKernel::flock(int file, int operation) { return errorOf(::flock(file, operation)); }

int LinuxKernel::setLeaseSignal(int file, int signal) { return errorOf(::fcntl(file, F_SETSIG, signal)); }

int LinuxKernel::setLease(int file, int kind) { return errorOf(::fcntl(file, F_SETLEASE, kind)); }

void LinuxKernel::close(int file) noexcept { static_cast<void>(::close(file)); }

void LinuxKernel::startFlush(RunQueue& queue, Ticket<int> ticket, int file) { flushes(queue).start(ticket, file); }

FlushService& LinuxKernel::flushes(RunQueue& queue) {
    if (!flushes_) flushes_ = makeKernelFlush(queue);
    return *flushes_;
}

}  // namespace vantrell
