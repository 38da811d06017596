// SPDX-License-Identifier: MIT
#include "platform/files/posix_toolbox.h"

#include <climits>
#include <utility>

#include "platform/files/crash_cleanup.h"
#include "platform/files/file_attributes.h"
#include "platform/files/file_remover.h"
#include "platform/files/folder_listing.h"
#include "platform/files/folder_search.h"
#include "platform/files/held_file.h"
#include "platform/files/place.h"
#include "platform/files/standing_file.h"

namespace vantrell {

namespace {

constexpr mode_t kFolderMode = 0777;

}  // namespace

PosixToolbox::PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock)
    : PosixToolbox(loop, kernel, clock, Options()) {}

PosixToolbox::PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock, Options options)
    : loop_(loop),
      kernel_(kernel),
      clock_(clock),
      quietTime_(clock),
      probe_(quietTime_),
      disposer_(loop),
      parts_{loop, kernel, disposer_, NamelessSupport(options.namelessFiles)},
      mover_(parts_, probe_) {}

void PosixToolbox::beginPass(const Path&) {
    parts_.made.clear();
    parts_.systems.forget();
}

void PosixToolbox::endPass() { parts_.made.clear(); }

bool PosixToolbox::wasMadeInThisPass(const Path& path) const {
    struct stat status {};
    return statusOf(kernel_, path, status) == 0 && parts_.made.contains(identityOf(status));
}

bool PosixToolbox::hasUncertainNames(const Path& folder) const {
    const UniqueFd opened = openFolder(kernel_, folder);
    return !opened || !parts_.systems.of(opened).hasFixedIdentities;
}

EntryKind PosixToolbox::kindOf(const Path& path) const {
    struct stat status {};
    if (statusOf(kernel_, path, status) != 0) return EntryKind::missing;
    if (S_ISREG(status.st_mode)) return EntryKind::regularFile;
    return S_ISDIR(status.st_mode) ? EntryKind::folder : EntryKind::other;
}

bool PosixToolbox::isFolder(const Path& path) const { return folderAt(kernel_, path).has_value(); }

bool PosixToolbox::isSameFolder(const Path& one, const Path& other) const {
    const auto folder = folderAt(kernel_, one);
    return folder && folder == folderAt(kernel_, other);
}

bool PosixToolbox::isSameFile(const Path& one, const Path& other) const {
    struct stat a {};
    struct stat b {};
    return statusOf(kernel_, one, a) == 0 && statusOf(kernel_, other, b) == 0 && identityOf(a) == identityOf(b);
}

// An inode number alone may be another file's after a while.
std::string PosixToolbox::markOf(const Path& path) const {
    struct stat status {};
    if (statusOf(kernel_, path, status) != 0 || !S_ISREG(status.st_mode)) return {};
    const FileStamp stamp = stampOf(status);
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

void PosixToolbox::clearReadOnly(const Path& path) { allowOwnerToWrite(kernel_, path); }

Task<std::vector<Path>> PosixToolbox::search(SearchOrder order) {
    return searchFolder(loop_, kernel_, std::move(order));
}

Task<std::vector<Path>> PosixToolbox::listFiles(Path folder) { return listFolder(loop_, kernel_, std::move(folder)); }

Result<std::unique_ptr<HeldFile>> PosixToolbox::hold(const Path& path) {
    Result<std::unique_ptr<PosixHeldFile>> file = PosixHeldFile::open(kernel_, probe_, path);
    if (!file.ok()) return file.fault();
    if (Result<> done = file.value()->checkUse(); !done.ok()) return done.fault();
    return file.take();
}

Task<Result<std::unique_ptr<HeldFile>>> PosixToolbox::holdInTurn(Path path, std::function<bool()>) {
    co_return hold(path);
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

Task<Result<>> PosixToolbox::removeFile(Path path, FileDate date) {
    return removeDatedFile(loop_, kernel_, disposer_, std::move(path), date);
}

Task<void> PosixToolbox::cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder) {
    for (const Path& folder : outputFolders) co_await removeLeftOutputs(parts_, folder, sourceFolder);
    co_await restoreSources(parts_, clock_, std::move(sourceFolder));
}

}  // namespace vantrell
