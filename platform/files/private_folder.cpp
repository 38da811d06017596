// SPDX-License-Identifier: MIT
#include "platform/files/private_folder.h"

#include "platform/files/safe_rename.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

PrivateFolder::PrivateFolder(const UniqueFd& parent) : parent_(parent), name_(makeTemporaryName(parent.kernel())) {
    error_ = parent_.kernel().mkdirat(parent_.get(), name_.c_str(), S_IRWXU);
    if (error_ != 0) {
        name_.clear();
        return;
    }
    folder_ = parent_.open(name_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (!folder_) error_ = folder_.error();
    if (folder_) folder_.lock();
}

PrivateFolder::~PrivateFolder() {
    // Where the name has been taken meanwhile, the file stays in here until the next start puts it beside.
    if (giveBack() == 0) remove();
}

void PrivateFolder::remove() {
    if (!name_.empty()) static_cast<void>(parent_.kernel().unlinkat(parent_.get(), name_.c_str(), AT_REMOVEDIR));
    name_.clear();
}

int PrivateFolder::take(const std::string& name) {
    const int error = parent_.kernel().renameat2(parent_.get(), name.c_str(), folder_.get(), name.c_str(), 0);
    if (error == 0) taken_ = name;
    return error;
}

int PrivateFolder::giveBack() {
    const int error = taken_.empty() ? 0 : renameNoReplace(folder_, taken_, parent_, taken_);
    if (error == 0) taken_.clear();
    return error;
}

int PrivateFolder::removeTaken() {
    const int error = folder_.unlink(taken_.c_str());
    if (error != 0) return error;
    taken_.clear();
    remove();
    return 0;
}

}  // namespace vantrell
