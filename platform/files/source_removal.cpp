// SPDX-License-Identifier: MIT
#include "platform/files/source_removal.h"

#include "platform/files/folder_flush.h"
#include "platform/files/held_file.h"
#include "platform/files/posix_fault.h"
#include "platform/files/use_probe.h"

namespace vantrell {

namespace {

// The target has taken the file, so what is not permitted concerns this one.
Fault removalFault(int error) {
    Fault fault = sourceFault(error, "The file cannot be removed from the source folder");
    if (error == EPERM || error == EACCES) fault.kind = FaultKind::notPermitted;
    return fault;
}

}  // namespace

Result<> SourceRemoval::check(const UniqueFd& folder, const FileStamp& original, const UniqueFd& opened) const {
    struct stat status {};
    const bool asksServer = !parts_.systems.of(folder).isLocal;
    if (const int error = statusNow(folder, from_.name.c_str(), asksServer, status); error != 0)
        return sourceFault(error, "The file cannot be looked at");
    const bool isWritten = !isUnwritten(status, original) ||
                           (opened && parts_.systems.of(opened).isLocal && askForWriters(opened) == Use::writing);
    return isWritten ? Result<>(inUseFault()) : Result<>();
}

Task<Result<>> SourceRemoval::remove(FileStamp original, const UniqueFd& opened, FileIdentity standing) {
    // A file that was changed keeps its place. Taken and given back, its name would not be on the disk for a moment.
    if (Result<> done = check(from_.folder, original, opened); !done.ok()) co_return done.fault();
    if (const int error = aside_.take(from_.name); error != 0) co_return removalFault(error);
    isBack_ = false;
    Result<> done = check(aside_.folder(), original, opened);
    // Two names that the file system takes for one have gone together.
    struct stat target {};
    if (to_.status(target) != 0 || identityOf(target) != standing) done = inUseFault();
    UniqueFd dropped;
    if (done.ok()) {
        dropped = aside_.folder().open(from_.name.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        const int error = aside_.removeTaken();
        if (error == 0) parts_.disposer.disposeWhenUnused(std::move(dropped));
        if (error == 0) co_return Result<>();
        done = removalFault(error);
    }
    // Only when the old name is on the disk again, the new one may go.
    if (aside_.giveBack() != 0) co_return done;
    const Result<> flushed = co_await flushFolder(parts_, from_.folder);
    isBack_ = flushed.ok();
    // Where the private folder could not be removed either, a cut must not bring a second name back in it.
    if (isBack_) static_cast<void>(co_await flushFolder(parts_, aside_.folder()));
    co_return done;
}

}  // namespace vantrell
