// SPDX-License-Identifier: MIT
#include "platform/files/held_file.h"

#include <utility>

#include "platform/files/place.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

Fault inUseFault() { return {FaultKind::inUse, "The file is in use by another program"}; }
Fault notRegularFault() { return {FaultKind::other, "It is not a regular file"}; }

namespace {

constexpr char kCannotBeOpened[] = "The file cannot be opened";
// Never follows a link, never waits for a writer, never becomes the controlling terminal.
constexpr int kReadFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

}  // namespace

Result<std::unique_ptr<PosixHeldFile>> PosixHeldFile::open(Kernel& kernel, const SourceTree& tree, UseProbe& probe,
                                                           const Path& path) {
    const Result<Place> opened = tree.openPlace(kernel, path);
    if (!opened.ok()) return opened.fault();
    const Place& place = opened.value();
    // Looked at first: opening a FIFO or a device would do something to whoever is at its other end.
    struct stat status {};
    if (const int error = place.status(status); error != 0) return sourceFault(error, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    UniqueFd file = place.folder.open(place.name.c_str(), kReadFlags);
    if (!file) return sourceFault(file.error(), kCannotBeOpened);
    int error = file.status(status);
    if (error == 0 && !probe.isLocal(file, status.st_dev)) error = statusNow(file, "", true, status);
    if (error != 0) return sourceFault(error, kCannotBeOpened);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    return std::make_unique<PosixHeldFile>(tree, probe, path, std::move(file), status);
}

Result<std::size_t> PosixHeldFile::read(std::span<std::byte> into) {
    ssize_t count = -EINTR;
    while (count == -EINTR) count = file_.kernel().pread(file_.get(), into, next_);
    if (count < 0) return sourceFault(static_cast<int>(-count), "The file cannot be read");
    next_ += count;
    return static_cast<std::size_t>(count);
}

// The way to the file is gone anew: what stands at its end now is what will be moved.
Result<> PosixHeldFile::verify() {
    const Result<Place> place = tree_.openPlace(file_.kernel(), path_);
    if (!place.ok()) return place.fault();
    const bool asksServer = !isLocal_;
    struct stat status {};
    if (const int error = statusNow(place.value().folder, place.value().name.c_str(), asksServer, status); error != 0)
        return sourceFault(error, "The file cannot be looked at");
    if (!S_ISREG(status.st_mode) || stampOf(status) != stamp_) return inUseFault();
    if (const int error = statusNow(file_, "", asksServer, status); error != 0)
        return sourceFault(error, "The file cannot be looked at");
    return stampOf(status) != stamp_ || isKnownToBeWritten() ? Result<>(inUseFault()) : Result<>();
}

// Elsewhere the writer may sit on another machine, and a lease says nothing.
bool PosixHeldFile::isKnownToBeWritten() {
    if (!isLocal_) return false;
    const bool wasAsked = std::exchange(wasAsked_, true);
    return (wasAsked ? askForWritersAgain(file_) : askForWriters(file_)) == Use::writing;
}

}  // namespace vantrell
