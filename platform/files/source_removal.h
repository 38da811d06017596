// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/output_parts.h"
#include "platform/files/place.h"
#include "platform/files/private_folder.h"

namespace vantrell {

/// Takes the old name of a file away, once its content stands safely under a new one. The file is looked at in a
/// private folder, where nobody can put another one in its place between the look and the removal.
class SourceRemoval {
public:
    /// All of it outlives it. Nothing has changed yet.
    SourceRemoval(OutputParts& parts, const Place& from, const Place& to)
        : parts_(parts), from_(from), to_(to), aside_(from.folder) {}

    /// Why nothing could be removed from that folder: the error number, or 0. To be asked before anything is written.
    [[nodiscard]] int error() const { return aside_.error(); }

    /// Removes what stands there, provided that it is the `original` and was not written since, and that `standing`
    /// stands at the target; `opened` is the original, or is empty where it could not be opened. After a fault it has
    /// its name again, if `isBack`; else the next start gives it its name, and whatever it was moved to must stay.
    Task<Result<>> remove(FileStamp original, const UniqueFd& opened, FileIdentity standing);
    [[nodiscard]] bool isBack() const { return isBack_; }

private:
    [[nodiscard]] Result<> check(const UniqueFd& folder, const FileStamp& original, const UniqueFd& opened) const;

    OutputParts& parts_;
    const Place& from_;
    const Place& to_;
    PrivateFolder aside_;
    bool isBack_ = true;
};

}  // namespace vantrell
