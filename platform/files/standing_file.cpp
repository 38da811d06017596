// SPDX-License-Identifier: MIT
#include "platform/files/standing_file.h"

#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

Result<std::unique_ptr<PosixStandingFile>> PosixStandingFile::open(OutputParts& parts, UseProbe& probe,
                                                                   const Path& path) {
    Result<Place> place = openPlace(parts.kernel, path);
    if (!place.ok()) return place.fault();
    struct stat status {};
    if (const int error = place.value().status(status); error != 0)
        return outputFault(error, "What stands there cannot be looked at");
    if (!S_ISREG(status.st_mode)) return notRegularFault();
    Result<std::unique_ptr<PosixHeldFile>> file = PosixHeldFile::open(parts.kernel, parts.elsewhere, probe, path);
    // It may be what was put there earlier: that it cannot be opened tells nothing about the file at work.
    if (!file.ok() && file.fault().kind != FaultKind::notThere) return Fault{FaultKind::machine, file.fault().text};
    if (!file.ok()) return file.fault();
    auto standing = std::make_unique<PosixStandingFile>(parts, probe, place.take(), file.take());
    if (Result<> done = standing->checkUnchanged(true); !done.ok()) return done.fault();
    return standing;
}

// What is equal byte for byte needs no time of quiet: nothing of it is taken away.
Result<> PosixStandingFile::checkUnchanged(bool withChangeTime) const {
    FileStamp then = file_->stamp();
    const auto isUnchanged = [&](const struct stat& status) {
        FileStamp now = stampOf(status);
        if (!withChangeTime) now.changed = then.changed;
        return now == then;
    };
    struct stat named {};
    struct stat held {};
    int error = place_.status(named);
    if (error == 0) error = file_->file().status(held);
    if (error != 0) return outputFault(error, "What stands there cannot be looked at");
    if (!isUnchanged(named) || !isUnchanged(held)) return inUseFault();
    return probe_.isKnownToBeWritten(file_->file()) ? Result<>(inUseFault()) : Result<>();
}

Task<Result<>> PosixStandingFile::confirm() {
    if (const Result<> done = co_await flushFile(parts_, file_->file()); !done.ok()) co_return done.fault();
    if (const Result<> done = co_await flushFolder(parts_, place_.folder); !done.ok()) co_return done.fault();
    co_return checkUnchanged(true);
}

Task<Result<>> PosixStandingFile::confirmArrival() {
    if (const Result<> done = checkUnchanged(true); !done.ok()) co_return done.fault();
    renewChangeTime(place_.folder, place_.name.c_str(), file_->status());
    if (const Result<> done = co_await flushFile(parts_, file_->file()); !done.ok()) co_return done.fault();
    if (const Result<> done = co_await flushFolder(parts_, place_.folder); !done.ok()) co_return done.fault();
    co_return checkUnchanged(false);
}

}  // namespace vantrell
