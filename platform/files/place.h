// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/file_stamp.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A name in a folder that is held open, so that several steps concern the same folder whatever happens to its path.
struct Place {
    UniqueFd folder;
    std::string name;

    /// What stands there, links not followed. 0 or the error number.
    [[nodiscard]] int status(struct stat& into) const { return folder.statusOf(name.c_str(), into); }
};

/// Opens the folder of a path. Fault `notThere` when it does not exist.
Result<Place> openPlace(Kernel& kernel, const Path& path);
/// The same when the folder of the path was opened already, or could not be.
Result<Place> placeIn(UniqueFd folder, const Path& path);

// These serve paths of any length, also beyond what the host takes in one call.
UniqueFd openFolder(Kernel& kernel, const Path& path);
/// For reading; never follows a link, never waits for a writer, never becomes the controlling terminal.
UniqueFd openForReading(Kernel& kernel, const Path& path);
/// Links are not followed. 0 or the error number; ENOENT also for a name that is too long to be there.
int statusOf(Kernel& kernel, const Path& path, struct stat& into);

/// Opens a path that is not longer than the host takes in one call.
UniqueFd openPath(Kernel& kernel, const Path& path, int flags, mode_t mode = 0);
/// The folder to which a path leads, also through links; nothing when it leads to none.
std::optional<FileIdentity> folderAt(Kernel& kernel, const Path& path);

}  // namespace vantrell
