// SPDX-License-Identifier: MIT
#include "platform/files/posix_toolbox.h"

#include <sys/stat.h>

#include <utility>

#include "platform/files/crash_cleanup.h"
#include "platform/files/file_attributes.h"
#include "platform/files/file_copier.h"
#include "platform/files/file_remover.h"
#include "platform/files/folder_listing.h"
#include "platform/files/folder_search.h"
#include "platform/files/held_file.h"
#include "platform/files/place.h"

namespace vantrell {

namespace {

constexpr mode_t kFolderMode = 0777;

bool isFolderStatus(const Path& path, struct stat& status) {
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

PosixToolbox::PosixToolbox(EventLoop& loop, const Clock& clock) : PosixToolbox(loop, clock, Options()) {}

PosixToolbox::PosixToolbox(EventLoop& loop, const Clock& clock, Options options)
    : loop_(loop),
      clock_(clock),
      quietTime_(clock),
      probe_(quietTime_),
      disposer_(loop),
      parts_{loop, disposer_, NamelessSupport(options.namelessFiles)},
      mover_(parts_, probe_) {}

EntryKind PosixToolbox::kindOf(const Path& path) const {
    struct stat status {};
    if (statusOf(path, status) != 0) return EntryKind::missing;
    if (S_ISREG(status.st_mode)) return EntryKind::regularFile;
    return S_ISDIR(status.st_mode) ? EntryKind::folder : EntryKind::other;
}

bool PosixToolbox::isFolder(const Path& path) const {
    struct stat status {};
    return isFolderStatus(path, status);
}

bool PosixToolbox::isSameFolder(const Path& one, const Path& other) const {
    struct stat a {};
    struct stat b {};
    return isFolderStatus(one, a) && isFolderStatus(other, b) && identityOf(a) == identityOf(b);
}

bool PosixToolbox::makeFolder(const Path& path) { return ::mkdir(path.c_str(), kFolderMode) == 0; }

void PosixToolbox::clearReadOnly(const Path& path) { allowOwnerToWrite(path.c_str()); }

Task<std::vector<Path>> PosixToolbox::search(SearchOrder order) { return searchFolder(loop_, std::move(order)); }

Task<std::vector<Path>> PosixToolbox::listFiles(Path folder) { return listFolder(loop_, std::move(folder)); }

Result<std::unique_ptr<HeldFile>> PosixToolbox::hold(const Path& path) {
    Result<std::unique_ptr<PosixHeldFile>> file = PosixHeldFile::open(probe_, path);
    if (!file.ok()) return file.fault();
    if (Result<> done = file.value()->checkUse(); !done.ok()) return done.fault();
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

Task<Result<>> PosixToolbox::copy(Path source, Path target, unsigned permissions) {
    return copyFile(parts_, probe_, std::move(source), std::move(target), permissions);
}

Task<Result<>> PosixToolbox::removeFile(Path path, FileDate date) {
    return removeDatedFile(loop_, disposer_, std::move(path), date);
}

Task<void> PosixToolbox::cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder) {
    for (const Path& folder : outputFolders) co_await removeLeftOutputs(loop_, folder, sourceFolder);
    co_await restoreSources(loop_, clock_, std::move(sourceFolder));
}

}  // namespace vantrell
