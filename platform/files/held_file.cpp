// SPDX-License-Identifier: MIT
#include "platform/files/held_file.h"

#include <unistd.h>

#include <cerrno>

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

Fault inUseFault() { return {FaultKind::inUse, "The file is in use by another program"}; }
Fault notRegularFault() { return {FaultKind::other, "It is not a regular file"}; }

namespace {

constexpr char kCannotBeOpened[] = "The file cannot be opened";

// A source that cannot be read says nothing about the machine to which we write.
Fault sourceFault(int number, std::string_view what) {
    Fault fault = faultFromErrno(number, what);
    if (fault.isTheMachines()) fault.kind = FaultKind::other;
    return fault;
}

}  // namespace

Result<std::unique_ptr<PosixHeldFile>> PosixHeldFile::open(UseProbe& probe, const Path& path) {
    // Looked at first: opening a FIFO or a device would do something to whoever is at its other end.
    struct stat status {};
    if (const int error = statusOf(path, status); error != 0) return sourceFault(error, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    UniqueFd file = openForReading(path);
    if (!file || ::fstat(file.get(), &status) != 0) return sourceFault(errno, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    return std::make_unique<PosixHeldFile>(probe, path, std::move(file), status);
}

Result<std::size_t> PosixHeldFile::read(std::span<std::byte> into) {
    ssize_t count = -1;
    do {
        count = ::read(file_.get(), into.data(), into.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) return sourceFault(errno, "The file cannot be read");
    return static_cast<std::size_t>(count);
}

Result<> PosixHeldFile::checkUse() { return probe_.isInUse(file_.get(), stamp_) ? inUseFault() : Result<>(); }

Result<> PosixHeldFile::verify() {
    struct stat status {};
    if (const int error = statusOf(path_, status); error != 0)
        return sourceFault(error, "The file cannot be looked at");
    if (!S_ISREG(status.st_mode) || stampOf(status) != stamp_) return inUseFault();
    if (::fstat(file_.get(), &status) != 0) return sourceFault(errno, "The file cannot be looked at");
    if (stampOf(status) != stamp_) return inUseFault();
    return checkUse();
}

}  // namespace vantrell
