// SPDX-License-Identifier: MIT
#include "platform/files/folder_descent.h"

#include <utility>

#include "platform/files/folder_reader.h"
#include "platform/files/posix_fault.h"

namespace vantrell {

namespace {

// The last levels are kept open, and one in so many above them: reopening takes at most that many steps.
constexpr std::size_t kLastLevels = 32;
constexpr std::size_t kOneIn = 64;

UniqueFd openLevel(const UniqueFd& parent, const std::string& name) {
    return parent.open(name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

Fault openingFault(int error) {
    Fault fault = faultFromErrno(error, kFolderCannotBeRead);
    if (error == ENOTDIR || error == ELOOP) fault.kind = FaultKind::notThere;
    if (error == EACCES || error == EPERM) fault.kind = FaultKind::notPermitted;
    return fault;
}

}  // namespace

FolderDescent::FolderDescent(UniqueFd top) {
    if (!top) topOpened_ = openingFault(top.error());
    levels_.push_back({{}, std::move(top)});
}

const UniqueFd& FolderDescent::current() {
    std::size_t open = levels_.size() - 1;
    while (open > 0 && !levels_[open].folder) --open;
    if (open == levels_.size() - 1) return levels_[open].folder;
    UniqueFd below = openLevel(levels_[open].folder, levels_[open + 1].name);
    for (std::size_t i = open + 2; below && i < levels_.size(); ++i) below = openLevel(below, levels_[i].name);
    levels_.back().folder = std::move(below);
    return levels_.back().folder;
}

Result<> FolderDescent::enter(const std::string& name) {
    UniqueFd folder = openLevel(current(), name);
    if (!folder) return openingFault(folder.error());
    levels_.push_back({name, std::move(folder)});
    if (levels_.size() > kLastLevels) {
        const std::size_t old = levels_.size() - 1 - kLastLevels;
        if (old % kOneIn != 0) levels_[old].folder.reset();
    }
    return {};
}

}  // namespace vantrell
