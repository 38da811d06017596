// SPDX-License-Identifier: MIT
#include "platform/files/standing_file.h"

#include "platform/files/folder_flush.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

Result<std::unique_ptr<PosixStandingFile>> PosixStandingFile::open(EventLoop& loop, Kernel& kernel, UseProbe& probe,
                                                                   const Path& path) {
    Result<Place> place = openPlace(kernel, path);
    if (!place.ok()) return place.fault();
    Result<std::unique_ptr<PosixHeldFile>> file = PosixHeldFile::open(kernel, probe, path);
    if (!file.ok()) return file.fault();
    auto standing = std::make_unique<PosixStandingFile>(loop, place.take(), file.take());
    if (Result<> done = standing->checkUnchanged(); !done.ok()) return done.fault();
    return standing;
}

// What is equal byte for byte needs no time of quiet: nothing of it is taken away.
Result<> PosixStandingFile::checkUnchanged() const {
    struct stat named {};
    struct stat held {};
    const bool isThere = place_.status(named) == 0 && file_->file().status(held) == 0;
    if (!isThere || stampOf(named) != file_->stamp() || stampOf(held) != file_->stamp()) return inUseFault();
    return askForWriters(file_->file()) == Use::writing ? Result<>(inUseFault()) : Result<>();
}

Task<Result<>> PosixStandingFile::confirm() {
    const int error = co_await beginFlush(loop_, file_->file());
    if (error != 0) co_return faultFromErrno(error, "The file that stands there cannot be brought to stable storage");
    const Result<> flushed = co_await flushFolder(loop_, place_.folder);
    co_return flushed.ok() ? checkUnchanged() : flushed;
}

}  // namespace vantrell
