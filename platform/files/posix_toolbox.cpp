// SPDX-License-Identifier: MIT
#include "platform/files/posix_toolbox.h"

#include <algorithm>
#include <climits>
#include <utility>

#include "platform/files/crash_cleanup.h"
#include "platform/files/file_attributes.h"
#include "platform/files/file_remover.h"
#include "platform/files/folder_listing.h"
#include "platform/files/folder_search.h"
#include "platform/files/held_file.h"
#include "platform/files/place.h"
#include "platform/files/posix_fault.h"
#include "platform/files/standing_file.h"
#include "platform/files/tree_flush.h"

namespace vantrell {

namespace {

constexpr mode_t kFolderMode = 0777;

// Nothing when nothing stands there. What cannot be looked at may be anything.
using Look = Result<std::optional<struct stat>>;
enum class Links : std::uint8_t { lookedAt, followed };

Look look(Kernel& kernel, const Path& path, Links links = Links::lookedAt) {
    struct stat status {};
    const bool isFollowed = links == Links::followed;
    const int error = isFollowed ? kernel.fstatat(AT_FDCWD, path.c_str(), status, 0) : statusOf(kernel, path, status);
    if (error == ENOENT || error == ENOTDIR) return std::optional<struct stat>();
    if (error != 0) return outputFault(error, "It cannot be looked at");
    return std::optional(status);
}

Result<bool> areOne(const Look& one, const Look& other) {
    for (const Look* look : {&one, &other}) {
        if (!look->ok()) return look->fault();
        if (!look->value()) return false;
    }
    return identityOf(*one.value()) == identityOf(*other.value());
}

}  // namespace

PosixToolbox::PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock)
    : PosixToolbox(loop, kernel, clock, Options()) {}

PosixToolbox::PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock, Options options)
    : loop_(loop),
      kernel_(kernel),
      clock_(clock),
      disposer_(loop),
      parts_{loop, kernel, disposer_, NamelessSupport(options.namelessFiles)},
      probe_(clock, parts_.systems),
      mounts_(kernel),
      mover_(parts_, probe_) {}

void PosixToolbox::beginPass(const Path& source) {
    parts_.made.clear();
    parts_.systems.beginPass();
    parts_.targets.beginPass();
    parts_.nameless.forget();
    parts_.source.hold(kernel_, source);
}

void PosixToolbox::endPass() {
    parts_.made.clear();
    parts_.source.release();
    parts_.systems.endPass();
    parts_.targets.endPass();
    probe_.forgetSettled();
}

Result<bool> PosixToolbox::wasMadeInThisPass(const Path& path) const {
    const Look there = look(kernel_, path);
    if (!there.ok()) return there.fault();
    return there.value() && parts_.made.contains(identityOf(*there.value()));
}

bool PosixToolbox::hasUncertainNames(const Path& folder) const {
    const UniqueFd opened = openFolder(kernel_, folder);
    return !opened || !parts_.systems.of(opened).hasFixedIdentities;
}

EntryKind PosixToolbox::kindOf(const Path& path) const {
    const Look there = look(kernel_, path);
    if (!there.ok()) return EntryKind::unknown;
    if (!there.value()) return EntryKind::missing;
    const mode_t mode = there.value()->st_mode;
    if (S_ISREG(mode)) return EntryKind::regularFile;
    return S_ISDIR(mode) ? EntryKind::folder : EntryKind::other;
}

bool PosixToolbox::isFolder(const Path& path) const { return folderAt(kernel_, path).has_value(); }

Result<bool> PosixToolbox::isSameFolder(const Path& one, const Path& other) const {
    const Look a = look(kernel_, one, Links::followed);
    const Look b = look(kernel_, other, Links::followed);
    const Result<bool> isSame = areOne(a, b);
    return isSame.ok() ? Result<bool>(isSame.value() && S_ISDIR(a.value()->st_mode)) : isSame;
}

Result<bool> PosixToolbox::isSameFile(const Path& one, const Path& other) const {
    return areOne(look(kernel_, one), look(kernel_, other));
}

// An inode number alone may be another file's after a while.
Result<std::string> PosixToolbox::markOf(const Path& path) const {
    const Look there = look(kernel_, path);
    if (!there.ok()) return there.fault();
    if (!there.value() || !S_ISREG(there.value()->st_mode)) return std::string();
    const FileStamp stamp = stampOf(*there.value());
    return std::to_string(stamp.identity.inode) + " " + std::to_string(stamp.size) + " " +
           std::to_string(stamp.modified.seconds) + "." + std::to_string(stamp.modified.nanoseconds);
}

std::size_t PosixToolbox::longestName(const Path& folder) const {
    const UniqueFd opened = openFolder(kernel_, folder);
    struct statfs system {};
    const bool isKnown = opened && kernel_.fstatfs(opened.get(), system) == 0 && system.f_namelen > 0;
    return isKnown ? static_cast<std::size_t>(system.f_namelen) : NAME_MAX;
}

bool PosixToolbox::makeFolder(const Path& path) { return kernel_.mkdirat(AT_FDCWD, path.c_str(), kFolderMode) == 0; }

void PosixToolbox::clearReadOnly(const Path& path) {
    const Result<Place> place = parts_.source.openPlace(kernel_, path);
    if (!place.ok()) return;
    const UniqueFd& folder = place.value().folder;
    const char* const name = place.value().name.c_str();
    struct stat before {};
    struct stat after {};
    const bool asksServer = !probe_.isLocal(folder);
    const bool isKnown = asksServer && statusNow(folder, name, true, before) == 0;
    allowOwnerToWrite(folder, name);
    // Where two looks must be equal, our own change may not count as somebody's.
    if (isKnown && statusNow(folder, name, true, after) == 0) probe_.carryOver(stampOf(before), stampOf(after));
}

Task<std::vector<Path>> PosixToolbox::search(SearchOrder order) {
    return searchFolder(parts_, probe_, std::move(order));
}

Task<std::vector<Path>> PosixToolbox::listFiles(Path folder) { return listFolder(loop_, kernel_, std::move(folder)); }

Result<std::unique_ptr<HeldFile>> PosixToolbox::hold(const Path& path) {
    Readiness readiness;
    return holdNow(path, readiness);
}

Result<std::unique_ptr<HeldFile>> PosixToolbox::holdNow(const Path& path, Readiness& readiness) {
    Result<std::unique_ptr<PosixHeldFile>> file = PosixHeldFile::open(kernel_, parts_.source, probe_, path);
    if (!file.ok()) return file.fault();
    readiness = file.value()->readiness();
    if (readiness.state != Readiness::State::free) return inUseFault();
    return file.take();
}

// The name is opened anew after the wait, which is the second look. When it differs, somebody writes, and that look is
// the first one of the next pass.
Task<Result<std::unique_ptr<HeldFile>>> PosixToolbox::holdInTurn(Path path, std::function<bool()> isStopped) {
    Readiness readiness;
    Result<std::unique_ptr<HeldFile>> first = holdNow(path, readiness);
    if (readiness.state != Readiness::State::unknown) co_return first;
    constexpr std::chrono::milliseconds kStep{100};
    auto left = std::chrono::ceil<std::chrono::milliseconds>(readiness.wait);
    for (; left.count() > 0 && !(isStopped && isStopped()); left -= kStep) co_await loop_.after(std::min(left, kStep));
    if (left.count() > 0) co_return first;
    co_return holdNow(path, readiness);
}

Result<std::unique_ptr<StandingFile>> PosixToolbox::openStanding(const Path& path) {
    Result<std::unique_ptr<PosixStandingFile>> file = PosixStandingFile::open(parts_, probe_, path);
    if (!file.ok()) return file.fault();
    return file.take();
}

Result<std::unique_ptr<OutputFile>> PosixToolbox::createOutput(const Path& folder) {
    Result<std::unique_ptr<PosixOutputFile>> file = PosixOutputFile::create(parts_, folder);
    if (!file.ok()) return file.fault();
    return file.take();
}

Task<Result<>> PosixToolbox::rename(Path source, Path target) {
    return mover_.move({std::move(source), std::move(target)}, FileMover::Reach::oneFileSystem);
}

Task<Result<>> PosixToolbox::move(MoveOrder order) { return mover_.move(std::move(order), FileMover::Reach::anywhere); }

Task<Result<>> PosixToolbox::flushFolders(std::vector<Path> folders) {
    for (const Path& folder : folders) {
        const Result<> flushed = co_await flushTree(parts_, folder);
        if (!flushed.ok()) co_return flushed;
    }
    co_return Result<>();
}

Task<Result<>> PosixToolbox::removeFile(Path path, FileDate date) {
    return removeDatedFile(loop_, kernel_, disposer_, std::move(path), date);
}

Task<void> PosixToolbox::cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder,
                                           std::function<bool()> isStopped) {
    for (const Path& folder : outputFolders) co_await removeLeftOutputs(parts_, folder, sourceFolder, isStopped);
    co_await restoreSources(parts_, clock_, std::move(sourceFolder), std::move(isStopped));
}

}  // namespace vantrell
