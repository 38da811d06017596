// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/place.h"

namespace vantrell {

/// The folder that a pass takes its files from, as it was when the pass began. While it is held, everything below it is
/// reached beneath the one open folder and never through a link: a folder that somebody swaps for a link does not lead
/// out of it. The held folder itself may be reached through links.
class SourceTree {
public:
    void hold(Kernel& kernel, const Path& folder);
    void release();

    /// Opens the folder of a path, which may also lie elsewhere: then it is opened like any other. Fault `notThere`
    /// also when a link stands on the way.
    [[nodiscard]] Result<Place> openPlace(Kernel& kernel, const Path& path) const;
    /// Opens the folder for reading: the held one when it is that.
    [[nodiscard]] UniqueFd openFolder(Kernel& kernel, const Path& folder) const;

    /// Null while nothing is held.
    [[nodiscard]] const UniqueFd* root() const { return root_.get(); }

private:
    [[nodiscard]] UniqueFd openBeneath(const Path& relative) const;

    bool isHeld_ = false;
    Path path_;  ///< without a separator at its end
    std::shared_ptr<const UniqueFd> root_;
};

}  // namespace vantrell
