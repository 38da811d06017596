// SPDX-License-Identifier: MIT
#include "platform/files/link_mover.h"

#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/held_file.h"
#include "platform/files/move_fault.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

LinkMover::LinkMover(OutputParts& parts, const Place& from, const Place& to, const struct stat& source,
                     bool isReplacing)
    : parts_(parts), from_(from), to_(to), source_(source), isReplacing_(isReplacing), removal_(parts, from, to) {}

LinkMover::~LinkMover() {
    struct stat standing {};
    struct stat old {};
    if (newName_.empty() || to_.folder.statusOf(newName_.c_str(), standing) != 0) return;
    // Never the last name of a file. One that cannot be removed is one too many, which loses nothing.
    if (from_.status(old) == 0 && identityOf(old) == identityOf(standing))
        static_cast<void>(to_.folder.unlink(newName_.c_str()));
}

bool LinkMover::cannotBeLinked(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK || error == EXDEV;
}

// What is to replace another file waits under a temporary name, which the next start removes.
int LinkMover::link() {
    if (removal_.error() != 0) return removal_.error();
    std::string name = isReplacing_ ? makeTemporaryName(parts_.kernel) : to_.name;
    // By the open file: another one that takes its name in this moment gets none.
    const UniqueFd file = from_.folder.open(from_.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    struct stat status {};
    if (!file) return file.error();
    if (const int error = file.status(status); error != 0) return error;
    if (identityOf(status) != identityOf(source_)) return EBUSY;
    const int error = parts_.kernel.linkOpenFile(file.get(), to_.folder.get(), name.c_str());
    if (error == 0) newName_ = std::move(name);
    return error;
}

Task<Result<>> LinkMover::settleNewName() {
    struct stat standing {};
    const bool isIt =
        to_.folder.statusOf(newName_.c_str(), standing) == 0 && identityOf(standing) == identityOf(source_);
    if (!isIt) co_return inUseFault();
    renewChangeTime(to_.folder, newName_.c_str(), source_);
    file_ = to_.folder.open(newName_.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    // One that we may not read was not read: it goes to the rejected folder, and its names are all that is ours.
    if (file_) {
        if (const Result<> done = co_await flushFile(parts_, file_); !done.ok()) co_return done.fault();
    }
    if (isReplacing_) {
        const int error =
            parts_.kernel.renameat2(to_.folder.get(), newName_.c_str(), to_.folder.get(), to_.name.c_str(), 0);
        if (error != 0) co_return moveFault(to_, error, "The file cannot be moved");
        // An old file that has been replaced does not come back, so its successor stays in any case.
        newName_.clear();
    }
    co_return co_await flushFolder(parts_, to_.folder);
}

Task<Result<>> LinkMover::finish() {
    if (const Result<> done = co_await settleNewName(); !done.ok()) co_return done.fault();
    std::string name = std::exchange(newName_, {});
    const Result<> removed = co_await removal_.remove(stampOf(source_), file_, identityOf(source_));
    if (!removed.ok() && removal_.isBack()) newName_ = std::move(name);
    if (removed.ok()) parts_.made.insert(identityOf(source_));
    co_return removed;
}

}  // namespace vantrell
