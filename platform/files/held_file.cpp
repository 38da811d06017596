// SPDX-License-Identifier: MIT
#include "platform/files/held_file.h"

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

Fault inUseFault() { return {FaultKind::inUse, "The file is in use by another program"}; }
Fault notRegularFault() { return {FaultKind::other, "It is not a regular file"}; }

namespace {

constexpr char kCannotBeOpened[] = "The file cannot be opened";

}  // namespace

Result<std::unique_ptr<PosixHeldFile>> PosixHeldFile::open(Kernel& kernel, UseProbe& probe, const Path& path) {
    // Looked at first: opening a FIFO or a device would do something to whoever is at its other end.
    struct stat status {};
    if (const int error = statusOf(kernel, path, status); error != 0) return sourceFault(error, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    UniqueFd file = openForReading(kernel, path);
    if (!file) return sourceFault(file.error(), kCannotBeOpened);
    if (const int error = file.status(status); error != 0) return sourceFault(error, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    return std::make_unique<PosixHeldFile>(probe, path, std::move(file), status);
}

Result<std::size_t> PosixHeldFile::read(std::span<std::byte> into) {
    ssize_t count = -EINTR;
    while (count == -EINTR) count = file_.kernel().pread(file_.get(), into, next_);
    if (count < 0) return sourceFault(static_cast<int>(-count), "The file cannot be read");
    next_ += count;
    return static_cast<std::size_t>(count);
}

Result<> PosixHeldFile::checkUse() { return probe_.findInUse(file_, stamp_) ? inUseFault() : Result<>(); }

Result<> PosixHeldFile::verify() {
    struct stat status {};
    if (const int error = statusOf(file_.kernel(), path_, status); error != 0)
        return sourceFault(error, "The file cannot be looked at");
    if (!S_ISREG(status.st_mode) || stampOf(status) != stamp_) return inUseFault();
    if (const int error = file_.status(status); error != 0) return sourceFault(error, "The file cannot be looked at");
    if (stampOf(status) != stamp_) return inUseFault();
    return checkUse();
}

}  // namespace vantrell
