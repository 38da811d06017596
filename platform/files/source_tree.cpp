// SPDX-License-Identifier: MIT
#include "platform/files/source_tree.h"

#include <algorithm>

#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

constexpr int kFolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

UniqueFd openStepByStep(const UniqueFd& root, const Path& relative) {
    UniqueFd folder = root.open(".", kFolderFlags);
    for (std::size_t begin = 0; folder && begin < relative.size();) {
        const auto end = std::min(relative.find(kPathSeparator, begin), relative.size());
        if (end > begin) folder = folder.open(relative.substr(begin, end - begin).c_str(), kFolderFlags | O_NOFOLLOW);
        begin = end + 1;
    }
    return folder;
}

// Older kernels do not know the call, and some containers forbid it; one path can be longer than a call takes.
bool isNoAnswer(int error) {
    return error == ENOSYS || error == EPERM || error == E2BIG || error == EINVAL || error == ENAMETOOLONG ||
           error == EAGAIN;
}

}  // namespace

void SourceTree::hold(Kernel& kernel, const Path& folder) {
    path_ = folder;
    while (path_.size() > 1 && path_.ends_with(kPathSeparator)) path_.pop_back();
    root_ = std::make_shared<const UniqueFd>(vantrell::openFolder(kernel, folder));
    isHeld_ = true;
}

void SourceTree::release() {
    isHeld_ = false;
    root_.reset();
}

UniqueFd SourceTree::openBeneath(const Path& relative) const {
    if (!*root_) return {root_->kernel(), -root_->error()};
    if (relative == ".") return UniqueFd(root_);
    open_how how{};
    how.flags = kFolderFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
    Kernel& kernel = root_->kernel();
    UniqueFd folder(kernel, kernel.openat2(root_->get(), relative.c_str(), how));
    return !folder && isNoAnswer(folder.error()) ? openStepByStep(*root_, relative) : std::move(folder);
}

Result<Place> SourceTree::openPlace(Kernel& kernel, const Path& path) const {
    const Path above = path_.ends_with(kPathSeparator) ? path_ : path_ + kPathSeparator;
    if (!isHeld_ || !path.starts_with(above)) return vantrell::openPlace(kernel, path);
    const Path relative = path.substr(above.size());
    const std::string name = nameOf(relative);
    if (name.empty() || name == "." || name == "..") return Fault{FaultKind::other, "The path does not name a file"};
    UniqueFd folder = openBeneath(folderOf(relative));
    if (folder) return Place{std::move(folder), name};
    Fault fault = sourceFault(folder.error(), "The folder cannot be opened");
    const int error = folder.error();
    if (error == ELOOP || error == ENOTDIR || error == EXDEV) fault.kind = FaultKind::notThere;
    return fault;
}

UniqueFd SourceTree::openFolder(Kernel& kernel, const Path& folder) const {
    Path path = folder;
    while (path.size() > 1 && path.ends_with(kPathSeparator)) path.pop_back();
    const bool isHeld = isHeld_ && path == path_;
    return isHeld ? openBeneath(".") : vantrell::openFolder(kernel, folder);
}

}  // namespace vantrell
