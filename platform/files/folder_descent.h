// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/place.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A way down a folder tree of any depth, one level at a time, that never leaves it through a link. Keeps a bounded
/// share of the levels open.
class FolderDescent {
public:
    /// The top as it was opened, or could not be opened.
    explicit FolderDescent(UniqueFd top);
    /// The top itself may be reached through links.
    FolderDescent(Kernel& kernel, const Path& top) : FolderDescent(openFolder(kernel, top)) {}
    /// Whether the top could be opened. Here as in `enter`, the fault is `notThere` also when what stands there is no
    /// folder, or a link; `notPermitted` when it may not be read.
    [[nodiscard]] const Result<>& topOpened() const { return topOpened_; }

    /// The folder in which we are; not open when it cannot be reached (any more). Holds until `enter` or `leave`.
    [[nodiscard]] const UniqueFd& current();
    /// Goes into a folder of the current one. Nothing has changed when there is a fault.
    Result<> enter(const std::string& name);
    /// Goes back up; never from the top.
    void leave() { levels_.pop_back(); }

private:
    struct Level {
        std::string name;
        UniqueFd folder;
    };
    std::vector<Level> levels_;
    Result<> topOpened_;
};

}  // namespace vantrell
