// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "base/path.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A way down a folder tree of any depth, one level at a time, that never leaves it through a link. Keeps a bounded
/// share of the levels open.
class FolderDescent {
public:
    /// The top itself may be reached through links.
    explicit FolderDescent(const Path& top);
    /// The errno of what kept it from opening the top, else 0.
    [[nodiscard]] int topError() const { return topError_; }

    /// The folder in which we are; -1 when it cannot be reached (any more).
    [[nodiscard]] int current();
    /// Goes into a folder of the current one. False, and nothing has changed but errno, when it cannot be opened.
    bool enter(const std::string& name);
    /// Goes back up; never from the top.
    void leave() { levels_.pop_back(); }

private:
    struct Level {
        std::string name;
        UniqueFd folder;
    };
    std::vector<Level> levels_;
    int topError_ = 0;
};

}  // namespace vantrell
