// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <map>
#include <string>

namespace vantrell {

/// Opens a file without a name in the folder: -1 and errno when it cannot be done.
[[nodiscard]] int openNameless(int folder);
/// Gives such a file a name; never replaces (EEXIST). 0 or the host's error number.
[[nodiscard]] int nameTheNameless(int file, int folder, const std::string& name);

/// Whether files without a name can be made and named on a file system. Tried out once for each.
class NamelessSupport {
public:
    /// `allowed` False: as if no file system had them.
    explicit NamelessSupport(bool allowed) : allowed_(allowed) {}
    [[nodiscard]] bool worksIn(int folder);

private:
    bool allowed_;
    std::map<dev_t, bool> known_;
};

}  // namespace vantrell
