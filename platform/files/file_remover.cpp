// SPDX-License-Identifier: MIT
#include "platform/files/file_remover.h"

#include <utility>

#include "platform/files/file_date.h"
#include "platform/files/file_stamp.h"
#include "platform/files/held_file.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/use_probe.h"

namespace vantrell {

namespace {

constexpr char kCannotBeLookedAt[] = "The file cannot be looked at";

// Opened to be shrunk once its name is gone. Not open where it may not be written: then it is dropped all at once.
UniqueFd openLargeFile(const Place& place, const struct stat& checked) {
    if (checked.st_size <= kDropStep) return {};
    constexpr int kFlags = O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    UniqueFd contents = place.folder.open(place.name.c_str(), kFlags);
    struct stat opened {};
    if (contents && (contents.status(opened) != 0 || identityOf(opened) != identityOf(checked))) contents.reset();
    return contents;
}

Result<> checkFile(const UniqueFd& file, FileDate date, struct stat& status) {
    const int error = file ? file.status(status) : file.error();
    if (error != 0) return faultFromErrno(error, kCannotBeLookedAt);
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    if (date == FileDate() || fileDateOf(file) != date) return inUseFault();
    return {};
}

// While `file` is open its inode is nobody else's, so that an equal one under the name is the file that was checked.
// The value: the contents of a large file, still to be dropped.
Result<UniqueFd> unlinkChecked(const Place& place, FileDate date) {
    const UniqueFd file = place.folder.open(place.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    struct stat checked {};
    if (Result<> done = checkFile(file, date, checked); !done.ok()) return done.fault();
    UniqueFd contents = openLargeFile(place, checked);
    struct stat standing {};
    if (const int error = place.status(standing); error != 0) return faultFromErrno(error, kCannotBeLookedAt);
    if (identityOf(standing) != identityOf(checked)) return inUseFault();
    if (const int error = place.folder.unlink(place.name.c_str()); error != 0)
        return faultFromErrno(error, "The file cannot be removed");
    return contents;
}

}  // namespace

Task<Result<>> removeDatedFile(EventLoop& loop, Kernel& kernel, Disposer& disposer, Path path, FileDate date) {
    const Result<Place> place = openPlace(kernel, path);
    if (!place.ok()) co_return place.fault();
    Result<UniqueFd> unlinked = unlinkChecked(place.value(), date);
    if (!unlinked.ok()) co_return unlinked.fault();
    UniqueFd contents = unlinked.take();
    if (!contents) co_return Result<>();
    // Whoever still reads it keeps it whole.
    if (isOnlyDescriptor(contents))
        co_await shrink(loop, contents);
    else
        disposer.disposeWhenUnused(std::move(contents));
    co_return Result<>();
}

}  // namespace vantrell
