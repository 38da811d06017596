// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/files/unique_fd.h"

namespace vantrell {

/// A folder beside a file that only we enter, in which the file can be looked at and removed without another one
/// taking its name meanwhile. Locked while it is in use; a start that finds one unlocked moves its file back.
class PrivateFolder {
public:
    /// Makes it in the open folder `parent`, which outlives it.
    explicit PrivateFolder(const UniqueFd& parent);
    PrivateFolder(const PrivateFolder&) = delete;
    PrivateFolder& operator=(const PrivateFolder&) = delete;
    /// Gives back what was taken, and removes the folder.
    ~PrivateFolder();

    /// Why it could not be made: the error number, or 0.
    [[nodiscard]] int error() const { return error_; }
    [[nodiscard]] const UniqueFd& folder() const { return folder_; }

    // Each: 0 or the error number.
    /// Takes the file of that name out of the parent folder.
    [[nodiscard]] int take(const std::string& name);
    /// Removes the file that was taken, and the folder. What is flushed next is the parent folder, which then no longer
    /// leads to either.
    [[nodiscard]] int removeTaken();
    /// Gives it back, unless its name has been taken by another file meanwhile: then it stays in here.
    [[nodiscard]] int giveBack();

private:
    void remove();

    const UniqueFd& parent_;
    int error_ = 0;
    std::string name_;
    UniqueFd folder_;
    std::string taken_;
};

}  // namespace vantrell
