// SPDX-License-Identifier: MIT
#pragma once

#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

#include <array>
#include <cstddef>
#include <span>

#include "task/run_queue.h"

namespace vantrell {

/// Every call by which the rooms of files touch the machine. No file room makes one past it (the test rooms.seam), so
/// that whoever implements this interface decides what disk the program stands on.
///
/// Each member does what the system call of its name does, once, without retrying. Those that give a descriptor or a
/// number of bytes give the negative error number on failure; those that only succeed or fail give 0 or the error
/// number. None of them sets or reads errno. Names end with NUL; a folder is an open descriptor or AT_FDCWD.
class Kernel {
public:
    Kernel() = default;
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;
    virtual ~Kernel() = default;

    // A descriptor or a number of bytes, or the negative error number.
    [[nodiscard]] virtual int openat(int folder, const char* path, int flags, mode_t mode) = 0;
    /// With rules about the way: RESOLVE_BENEATH, RESOLVE_NO_SYMLINKS (Linux 5.6 and later; ENOSYS before).
    [[nodiscard]] virtual int openat2(int folder, const char* path, const open_how& how) = 0;
    [[nodiscard]] virtual ssize_t read(int file, std::span<std::byte> into) = 0;
    [[nodiscard]] virtual ssize_t pread(int file, std::span<std::byte> into, off_t offset) = 0;
    [[nodiscard]] virtual ssize_t write(int file, std::span<const std::byte> bytes) = 0;
    [[nodiscard]] virtual ssize_t pwrite(int file, std::span<const std::byte> bytes, off_t offset) = 0;
    /// Entries as `linux_dirent64` lays them out; 0 at the end.
    [[nodiscard]] virtual ssize_t getdents64(int folder, std::span<std::byte> into) = 0;
    [[nodiscard]] virtual ssize_t flistxattr(int file, std::span<char> names) = 0;
    [[nodiscard]] virtual ssize_t fgetxattr(int file, const char* name, std::span<char> value) = 0;
    [[nodiscard]] virtual ssize_t getrandom(std::span<std::byte> into) = 0;

    // 0 or the error number.
    [[nodiscard]] virtual int fstat(int file, struct stat& into) = 0;
    [[nodiscard]] virtual int fstatat(int folder, const char* path, struct stat& into, int flags) = 0;
    [[nodiscard]] virtual int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) = 0;
    [[nodiscard]] virtual int fstatfs(int file, struct statfs& into) = 0;
    [[nodiscard]] virtual int faccessat(int folder, const char* path, int mode, int flags) = 0;
    [[nodiscard]] virtual int linkat(int fromFolder, const char* from, int toFolder, const char* to) = 0;
    /// linkat by way of /proc: gives the open file a name, also when it has none.
    [[nodiscard]] virtual int linkOpenFile(int file, int folder, const char* name) = 0;
    [[nodiscard]] virtual int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                                        unsigned flags) = 0;
    [[nodiscard]] virtual int unlinkat(int folder, const char* path, int flags) = 0;
    [[nodiscard]] virtual int mkdirat(int folder, const char* path, mode_t mode) = 0;
    [[nodiscard]] virtual int fsync(int file) = 0;
    [[nodiscard]] virtual int fdatasync(int file) = 0;
    [[nodiscard]] virtual int ftruncate(int file, off_t size) = 0;
    [[nodiscard]] virtual int futimens(int file, const std::array<timespec, 2>& times) = 0;
    [[nodiscard]] virtual int fchmod(int file, mode_t mode) = 0;
    /// chmod by way of /proc: also for a descriptor that was opened with O_PATH.
    [[nodiscard]] virtual int chmodOpenFile(int file, mode_t mode) = 0;
    [[nodiscard]] virtual int fchown(int file, uid_t owner, gid_t group) = 0;
    [[nodiscard]] virtual int fsetxattr(int file, const char* name, std::span<const char> value) = 0;
    [[nodiscard]] virtual int flock(int file, int operation) = 0;
    /// fcntl F_SETSIG: which signal tells of a lease that is broken.
    [[nodiscard]] virtual int setLeaseSignal(int file, int signal) = 0;
    /// fcntl F_SETLEASE with F_RDLCK, F_WRLCK or F_UNLCK.
    [[nodiscard]] virtual int setLease(int file, int kind) = 0;

    /// What is wrong with closing a file is known from its flush.
    virtual void close(int file) noexcept = 0;

    /// Submits a flush of the open file (a file: its data, as fdatasync; a folder: all, as fsync), which goes on while
    /// the event loop runs. The file may be closed as soon as this returns. `queue.wake(ticket, error)` follows, 0 or
    /// the error number, at once or later. The queue is the one event loop's.
    virtual void startFlush(RunQueue& queue, Ticket<int> ticket, int file) = 0;
};

}  // namespace vantrell
