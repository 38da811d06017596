// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>

#include <string>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A name in a folder that is held open, so that several steps concern the same folder whatever happens to its path.
struct Place {
    UniqueFd folder;
    std::string name;

    /// What stands there, links not followed. 0 or the host's error number.
    [[nodiscard]] int status(struct stat& into) const;
};

/// Opens the folder of a path. Fault `notThere` when it does not exist.
Result<Place> openPlace(const Path& path);

// These serve paths of any length, also beyond what the host takes in one call. Each sets errno when it fails.
UniqueFd openFolder(const Path& path);
/// For reading; never follows a link, never waits for a writer, never becomes the controlling terminal.
UniqueFd openForReading(const Path& path);
/// Links are not followed. 0 or the host's error number.
int statusOf(const Path& path, struct stat& into);

}  // namespace vantrell
