// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <utility>

#include "platform/files/place.h"

namespace vantrell {

/// The folders that a pass puts files into. They are found by their paths once for each group of files and held open
/// meanwhile, so that the files of a group go to the same folder whatever is mounted or renamed in between.
class TargetFolders {
public:
    void beginPass() { isPass_ = true; }
    void endPass() {
        isPass_ = false;
        held_.clear();
    }
    /// From here on they are found anew.
    void lookAgain() { held_.clear(); }

    [[nodiscard]] UniqueFd open(Kernel& kernel, const Path& path) {
        if (!isPass_) return openFolder(kernel, path);
        std::shared_ptr<const UniqueFd>& held = held_[path];
        if (!held || !*held) held = std::make_shared<const UniqueFd>(openFolder(kernel, path));
        return UniqueFd(held);
    }

private:
    bool isPass_ = false;
    std::map<Path, std::shared_ptr<const UniqueFd>> held_;
};

}  // namespace vantrell
