// SPDX-License-Identifier: MIT
#include "platform/files/use_probe.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>

#include <cerrno>
#include <csignal>

namespace vantrell {

namespace {

constexpr long kXfsMagic = 0x58465342;  // "XFSB"; not among the kernel's public magic numbers

// Where a refused lease says that the file is open, and nothing else.
bool refusalMeansOpen(int file) {
    struct statfs system {};
    if (::fstatfs(file, &system) != 0) return false;
    switch (system.f_type) {
        case EXT4_SUPER_MAGIC:
        case kXfsMagic:
        case BTRFS_SUPER_MAGIC:
        case TMPFS_MAGIC:
        case OVERLAYFS_SUPER_MAGIC:
            return true;
        default:
            return false;
    }
}

int tryLease(int file, int kind) {
    // Whoever opens the file in the few microseconds of the lease makes the kernel send us this signal, which does
    // nothing by default. SIGIO, which it sends otherwise, would end the process.
    if (::fcntl(file, F_SETSIG, SIGURG) != 0) return errno;
    if (::fcntl(file, F_SETLEASE, kind) != 0) return errno;
    return ::fcntl(file, F_SETLEASE, F_UNLCK) == 0 ? 0 : errno;
}

}  // namespace

Use askForWriters(int file) {
    const int answer = tryLease(file, F_RDLCK);
    if (answer == 0) return Use::none;
    return answer == EAGAIN && refusalMeansOpen(file) ? Use::writing : Use::unknown;
}

bool isOnlyDescriptor(int file) { return tryLease(file, F_WRLCK) == 0; }

bool UseProbe::isInUse(int file, const FileStamp& stamp) {
    const Use use = askForWriters(file);
    return use == Use::writing || (use == Use::unknown && !quietTime_.isQuiet(stamp));
}

}  // namespace vantrell
