// SPDX-License-Identifier: MIT
#include "platform/files/private_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

PrivateFolder::PrivateFolder(int parent) : parent_(parent), name_(makeTemporaryName()) {
    if (::mkdirat(parent_, name_.c_str(), S_IRWXU) != 0) {
        error_ = errno;
        name_.clear();
        return;
    }
    folder_ = UniqueFd(::openat(parent_, name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder_) error_ = errno;
    // A file system without locks is no reason to fail: only a second running program could mistake the folder.
    if (folder_) static_cast<void>(::flock(folder_.get(), LOCK_EX | LOCK_NB));
}

PrivateFolder::~PrivateFolder() {
    if (name_.empty()) return;
    // Where the name has been taken meanwhile, the file stays in here until the next start puts it beside.
    if (!taken_.empty() && renameNoReplace(folder_.get(), taken_, parent_, taken_) != 0) return;
    static_cast<void>(::unlinkat(parent_, name_.c_str(), AT_REMOVEDIR));
}

int PrivateFolder::take(const std::string& name) {
    if (::renameat(parent_, name.c_str(), folder_.get(), name.c_str()) != 0) return errno;
    taken_ = name;
    return 0;
}

int PrivateFolder::removeTaken() {
    if (::unlinkat(folder_.get(), taken_.c_str(), 0) != 0) return errno;
    taken_.clear();
    return 0;
}

}  // namespace vantrell
