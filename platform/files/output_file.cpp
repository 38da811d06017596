// SPDX-License-Identifier: MIT
#include "platform/files/output_file.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/files/folder_flush.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

// A larger piece can take longer than a turn of the loop while a flush is under way.
constexpr std::size_t kPiece = std::size_t{256} << 10U;
constexpr std::uint64_t kMostUnflushed = std::uint64_t{32} << 20U;
constexpr mode_t kOrdinaryMode = 0666;
constexpr char kCannotBeNamed[] = "The new file cannot be given its name";

UniqueFd openNamed(const UniqueFd& folder, std::string& name) {
    name = makeTemporaryName(folder.kernel());
    UniqueFd file = folder.open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOrdinaryMode);
    if (file)
        file.lock();
    else
        name.clear();
    return file;
}

}  // namespace

Result<std::unique_ptr<PosixOutputFile>> PosixOutputFile::create(OutputParts& parts, const Path& folderPath) {
    UniqueFd folder = parts.targets.open(parts.kernel, folderPath);
    if (!folder) return outputFault(folder.error(), "The folder cannot be opened");
    std::string name;
    UniqueFd file;
    if (parts.nameless.tryIn(folder)) file = openNameless(folder);
    if (!file) file = openNamed(folder, name);
    if (!file) return outputFault(file.error(), "The new file cannot be created");
    return std::make_unique<PosixOutputFile>(parts, std::move(folder), std::move(file), std::move(name));
}

PosixOutputFile::~PosixOutputFile() {
    dropName();
    parts_.unflushed -= unflushed_;
    if (file_) parts_.disposer.dispose(std::move(file_), std::move(flushUnderWay_));
}

void PosixOutputFile::fail(int error, std::string_view what) {
    if (error != 0 && failed_.ok()) failed_ = outputFault(error, what);
}

std::size_t PosixOutputFile::writePiece(std::span<const std::byte> piece) {
    const ssize_t count = parts_.kernel.write(file_.get(), piece);
    if (count < 0 && count != -EINTR) fail(static_cast<int>(-count), "The new file cannot be written");
    if (count < 0) return 0;
    const auto written = static_cast<std::size_t>(count);
    unflushed_ += written;
    parts_.unflushed += written;
    isDirty_ = true;
    return written;
}

Task<Result<>> PosixOutputFile::write(std::span<const std::byte> bytes) {
    while (!bytes.empty() && failed_.ok()) {
        bytes = bytes.subspan(writePiece(bytes.first(std::min(bytes.size(), kPiece))));
        if (failed_.ok() && parts_.unflushed >= kMostUnflushed) co_await keepPace();
        co_await parts_.loop.breathe();
    }
    co_return failed_;
}

// Awaits the flush before the last one, and submits the next.
Task<void> PosixOutputFile::keepPace() {
    co_await awaitFlush();
    if (failed_.ok()) submitFlush();
}

void PosixOutputFile::submitFlush() {
    flushUnderWay_.emplace(beginFlush(parts_.loop, file_));
    parts_.unflushed -= std::exchange(unflushed_, 0);
    isDirty_ = false;
}

Task<void> PosixOutputFile::awaitFlush() {
    if (!flushUnderWay_) co_return;
    const int error = parts_.flushed(co_await *flushUnderWay_);
    flushUnderWay_.reset();
    fail(error, "The new file cannot be brought to stable storage");
}

Task<Result<>> PosixOutputFile::flush() {
    co_await awaitFlush();
    if (failed_.ok() && isDirty_) {
        submitFlush();
        co_await awaitFlush();
    }
    co_return failed_;
}

int PosixOutputFile::giveName(const std::string& name) {
    if (temporaryName_.empty()) return nameTheNameless(file_, folder_, name);
    const int error = renameNoReplace(folder_, temporaryName_, folder_, name);
    if (error == 0) temporaryName_.clear();
    return error;
}

int PosixOutputFile::giveTemporaryName() {
    if (!temporaryName_.empty()) return 0;
    std::string between = makeTemporaryName(parts_.kernel);
    file_.lock();
    const int error = nameTheNameless(file_, folder_, between);
    if (error == 0) temporaryName_ = std::move(between);
    return error;
}

Task<Result<>> PosixOutputFile::replaceName(std::string name) {
    struct stat status {};
    int error = folder_.statusOf(name.c_str(), status);
    if (error == 0 && !S_ISREG(status.st_mode)) error = EEXIST;
    if (error == 0) error = giveTemporaryName();
    if (error != 0) co_return namingFault(error, kCannotBeNamed);
    // The old file goes with this rename, so the new one's count of names has to be on the disk before it.
    if (const Result<> done = co_await flushCount(); !done.ok()) co_return done.fault();
    error = parts_.kernel.renameat2(folder_.get(), temporaryName_.c_str(), folder_.get(), name.c_str(), 0);
    if (error != 0) co_return namingFault(error, kCannotBeNamed);
    temporaryName_.clear();
    co_return Result<>();
}

Result<> PosixOutputFile::nameIfFree(std::string name) {
    if (!failed_.ok()) return failed_;
    if (const int error = giveName(name); error != 0) return namingFault(error, kCannotBeNamed);
    // Undone by a fault and by an abort.
    temporaryName_ = std::move(name);
    parts_.named.push_back(this);
    return {};
}

Task<Result<>> PosixOutputFile::publish(std::string name, Replace replace) {
    const Result<> flushed = co_await flush();
    if (!flushed.ok()) co_return flushed;
    const Result<> named = nameIfFree(name);
    if (named.ok()) co_return co_await flushNames(parts_);
    if (!named.failedWith(FaultKind::nameTaken) || replace == Replace::never) co_return named;
    if (const Result<> replaced = co_await replaceName(name); !replaced.ok()) co_return replaced.fault();
    // Where an old file has been replaced, the new one is what there is, and no fault undoes that.
    failed_ = co_await flushFolder(parts_, folder_);
    if (failed_.ok()) isPublished();
    co_return failed_;
}

void PosixOutputFile::isPublished() {
    temporaryName_.clear();
    parts_.made.insert(identity());
    file_.reset();
}

// How many names a file has is part of the file. Where that does not reach the disk together with the name, a check of
// the disk would take the file for one without any, and clear the name.
Task<Result<>> PosixOutputFile::flushCount() {
    if (parts_.systems.of(folder_).ordersRenames) co_return Result<>();
    co_return co_await flushFile(parts_, file_);
}

// First all counts, at the same time, then each folder once.
Task<Result<>> flushNames(OutputParts& parts) {
    const std::vector<PosixOutputFile*> group = std::exchange(parts.named, {});
    std::map<FileIdentity, const UniqueFd*> folders;
    for (PosixOutputFile* file : group) {
        struct stat folder {};
        if (const int error = file->folder_.status(folder); error != 0) co_return outputFault(error, kCannotBeNamed);
        folders.try_emplace(identityOf(folder), &file->folder_);
        if (!parts.systems.of(file->folder_, folder.st_dev).ordersRenames) file->submitFlush();
    }
    Result<> flushed;
    for (PosixOutputFile* file : group) {
        co_await file->awaitFlush();
        if (flushed.ok()) flushed = file->failed_;
    }
    for (const auto& [identity, folder] : folders)
        if (flushed.ok()) flushed = co_await flushFolder(parts, *folder);
    for (PosixOutputFile* file : group) {
        if (flushed.ok()) file->isPublished();
        if (file->failed_.ok()) file->failed_ = flushed;
    }
    co_return flushed;
}

void PosixOutputFile::dropName() {
    std::erase(parts_.named, this);
    if (temporaryName_.empty()) return;
    struct stat status {};
    const bool isOurs = folder_.statusOf(temporaryName_.c_str(), status) == 0 && identityOf(status) == identity();
    // Left under a temporary name, it is removed by the next start.
    if (isOurs) static_cast<void>(folder_.unlink(temporaryName_.c_str()));
    temporaryName_.clear();
}

Task<void> PosixOutputFile::discard() {
    dropName();
    if (failed_.ok()) failed_ = Fault{FaultKind::other, "The new file has been dropped"};
    if (flushUnderWay_) static_cast<void>(parts_.flushed(co_await *flushUnderWay_));
    flushUnderWay_.reset();
    co_await shrink(parts_.loop, file_);
    file_.reset();
}

Result<> PosixOutputFile::setPermissions(mode_t permissions) {
    const int error = parts_.kernel.fchmod(file_.get(), permissions);
    // So answer file systems that have no permissions.
    if (error == 0 || error == EPERM) return {};
    return outputFault(error, "The new file's permissions cannot be set");
}

FileIdentity PosixOutputFile::identity() const {
    struct stat status {};
    return file_.status(status) == 0 ? identityOf(status) : FileIdentity{};
}

}  // namespace vantrell
