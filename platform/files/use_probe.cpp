// SPDX-License-Identifier: MIT
#include "platform/files/use_probe.h"

#include <linux/magic.h>

#include <csignal>

namespace vantrell {

namespace {

constexpr long kXfsMagic = 0x58465342;  // "XFSB"; not among the kernel's public magic numbers

// Where a refused lease says that the file is open, and nothing else.
bool refusalMeansOpen(const UniqueFd& file) {
    struct statfs system {};
    if (file.kernel().fstatfs(file.get(), system) != 0) return false;
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

int tryLease(const UniqueFd& file, int kind) {
    // Whoever opens the file in the few microseconds of the lease makes the kernel send us this signal, which does
    // nothing by default. SIGIO, which it sends otherwise, would end the process.
    Kernel& kernel = file.kernel();
    if (const int error = kernel.setLeaseSignal(file.get(), SIGURG); error != 0) return error;
    if (const int error = kernel.setLease(file.get(), kind); error != 0) return error;
    return kernel.setLease(file.get(), F_UNLCK);
}

}  // namespace

Use askForWriters(const UniqueFd& file) {
    const int answer = tryLease(file, F_RDLCK);
    if (answer == 0) return Use::none;
    return answer == EAGAIN && refusalMeansOpen(file) ? Use::writing : Use::unknown;
}

bool isOnlyDescriptor(const UniqueFd& file) { return tryLease(file, F_WRLCK) == 0; }

bool UseProbe::findInUse(const UniqueFd& file, const FileStamp& stamp) {
    const Use use = askForWriters(file);
    return use == Use::writing || (use == Use::unknown && !quietTime_.look(stamp));
}

}  // namespace vantrell
