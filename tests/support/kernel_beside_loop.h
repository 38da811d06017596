// SPDX-License-Identifier: MIT
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "platform/linux/linux_kernel.h"

namespace vantrell::test {

/// The real kernel, whose flushes another one completes: the kernel that the event loop watches. A test's own one
/// overrides the calls that are to be different.
class KernelBesideLoop : public LinuxKernel {
public:
    explicit KernelBesideLoop(Kernel& watched) : watched_(watched) {}
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
        watched_.startFlush(queue, ticket, file);
    }
    int openat(int folder, const char* path, int flags, mode_t mode) override {
        const bool isPlayed = !mountedAs.empty() && std::string_view(path) == "/proc/self/mountinfo";
        return isPlayed ? playedMounts() : LinuxKernel::openat(folder, path, flags, mode);
    }

    /// The type that all file systems have in the mount table ("ext2", "xfs"); empty: their own.
    std::string mountedAs;

private:
    [[nodiscard]] int playedMounts() const {
        std::ifstream mounts("/proc/self/mountinfo");
        std::string played;
        for (std::string line; std::getline(mounts, line);) {
            const std::size_t type = line.find(" - ") + 3;
            played += line.replace(type, line.find(' ', type) - type, mountedAs) + "\n";
        }
        const int file = ::memfd_create("mounts", MFD_CLOEXEC);
        return ::write(file, played.data(), played.size()) < 0 ? -EIO : file;
    }

    Kernel& watched_;
};

}  // namespace vantrell::test
