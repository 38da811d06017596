// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// Gives the open file `to` owner, permission bits, extended attributes and times of the open file `from`, whose
/// status is given. What we may not set (an owner) or the file system does not have (a stick's permissions) is left as
/// it is.
void copyAttributes(const UniqueFd& from, const struct stat& status, const UniqueFd& to);

/// Sees to it that a file that has just been moved bears the moment of the move as its last change of status, on file
/// systems where renaming does not see to it. `before` is its status before the move. Errors are ignored.
void renewChangeTime(const UniqueFd& folder, const char* name, const struct stat& before);

/// Gives the owner the right to write, when it is a regular file and the right is missing. Errors are ignored.
void allowOwnerToWrite(const UniqueFd& folder, const char* name);

}  // namespace vantrell
