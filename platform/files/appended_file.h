// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <set>
#include <string_view>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/file_stamp.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A text file of CR LF lines that lines are appended to, private (0600) when it is made here. The one that was
/// appended to last stays open. Before each write it is compared with what stands under the path, so that lines go
/// where they are looked for when somebody has removed, replaced or written to the file.
class AppendedFile {
public:
    /// The kernel outlives it.
    explicit AppendedFile(Kernel& kernel) : kernel_(kernel) {}

    // As DataFiles describes them.
    Result<> append(const Path& path, std::string_view lines, bool cutTornEnd);
    Result<> cutTornEnd(const Path& path);
    Result<> flush(const Path& path);

private:
    [[nodiscard]] bool isAsLeft(const Path& path) const;
    Result<> open(const Path& path, bool cutTornEnd);

    Kernel& kernel_;
    std::set<Path> notYetInFlushedFolder_;
    Path path_;
    UniqueFd file_;
    FileIdentity identity_;
    std::size_t size_ = 0;  ///< it ends with a line end there
};

}  // namespace vantrell
