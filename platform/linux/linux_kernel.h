// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/files/kernel.h"
#include "platform/linux/kernel_flush.h"

namespace vantrell {

/// The real kernel: each member is the one call. Outlives everything that was opened by it.
class LinuxKernel : public Kernel {
public:
    [[nodiscard]] int openat(int folder, const char* path, int flags, mode_t mode) override;
    [[nodiscard]] int openat2(int folder, const char* path, const open_how& how) override;
    [[nodiscard]] ssize_t read(int file, std::span<std::byte> into) override;
    [[nodiscard]] ssize_t pread(int file, std::span<std::byte> into, off_t offset) override;
    [[nodiscard]] ssize_t write(int file, std::span<const std::byte> bytes) override;
    [[nodiscard]] ssize_t pwrite(int file, std::span<const std::byte> bytes, off_t offset) override;
    [[nodiscard]] ssize_t getdents64(int folder, std::span<std::byte> into) override;
    [[nodiscard]] ssize_t flistxattr(int file, std::span<char> names) override;
    [[nodiscard]] ssize_t fgetxattr(int file, const char* name, std::span<char> value) override;
    [[nodiscard]] ssize_t getrandom(std::span<std::byte> into) override;

    [[nodiscard]] int fstat(int file, struct stat& into) override;
    [[nodiscard]] int fstatat(int folder, const char* path, struct stat& into, int flags) override;
    [[nodiscard]] int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) override;
    [[nodiscard]] int fstatfs(int file, struct statfs& into) override;
    [[nodiscard]] int faccessat(int folder, const char* path, int mode, int flags) override;
    [[nodiscard]] int linkat(int fromFolder, const char* from, int toFolder, const char* to) override;
    [[nodiscard]] int linkOpenFile(int file, int folder, const char* name) override;
    [[nodiscard]] int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
                                unsigned flags) override;
    [[nodiscard]] int unlinkat(int folder, const char* path, int flags) override;
    [[nodiscard]] int mkdirat(int folder, const char* path, mode_t mode) override;
    [[nodiscard]] int fsync(int file) override;
    [[nodiscard]] int fdatasync(int file) override;
    [[nodiscard]] int ftruncate(int file, off_t size) override;
    [[nodiscard]] int futimens(int file, const std::array<timespec, 2>& times) override;
    [[nodiscard]] int fchmod(int file, mode_t mode) override;
    [[nodiscard]] int chmodOpenFile(int file, mode_t mode) override;
    [[nodiscard]] int fchown(int file, uid_t owner, gid_t group) override;
    [[nodiscard]] int fsetxattr(int file, const char* name, std::span<const char> value) override;
    [[nodiscard]] int flock(int file, int operation) override;
    [[nodiscard]] int setLeaseSignal(int file, int signal) override;
    [[nodiscard]] int setLease(int file, int kind) override;
    void close(int file) noexcept override;
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override;

    /// Tells when flushes have completed. To be watched by whoever runs the event loop of `queue`, which outlives the
    /// kernel.
    [[nodiscard]] EventSource& flushCompletions(RunQueue& queue) { return flushes(queue); }

private:
    FlushService& flushes(RunQueue& queue);

    std::unique_ptr<FlushService> flushes_;  ///< made when it is first needed
};

}  // namespace vantrell
