// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "platform/files/unique_fd.h"

namespace vantrell {

/// Opens a file without a name in the folder; not open where that cannot be done.
[[nodiscard]] UniqueFd openNameless(const UniqueFd& folder);
/// Gives such a file a name; never replaces (EEXIST). 0 or the error number.
[[nodiscard]] int nameTheNameless(const UniqueFd& file, const UniqueFd& folder, const std::string& name);

/// Whether files without a name can be made and named on a file system. Tried out once for each.
class NamelessSupport {
public:
    /// `allowed` False: as if no file system had them.
    explicit NamelessSupport(bool allowed) : allowed_(allowed) {}
    /// Tries it out the first time, with a file that is gone again afterwards.
    [[nodiscard]] bool tryIn(const UniqueFd& folder);
    /// Device numbers are used again after a mount has gone.
    void forget() { known_.clear(); }

private:
    bool allowed_;
    std::map<dev_t, bool> known_;
};

}  // namespace vantrell
