// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/path.h"
#include "base/result.h"

namespace vantrell {

/// The small files of the program's own data folder. Every call runs to its end before it returns.
class DataFiles {
public:
    DataFiles() = default;
    DataFiles(const DataFiles&) = delete;
    DataFiles& operator=(const DataFiles&) = delete;
    virtual ~DataFiles() = default;

    /// At most `limit` bytes from the beginning of a regular file.
    [[nodiscard]] virtual Result<std::string> read(const Path& path, std::size_t limit) const = 0;

    /// Replaces or creates the file: temporary name in the same folder (mode 0600), flush, rename, flush of the folder.
    /// An existing file that may not be written, or is no regular file, is left as it is and reported.
    virtual Result<> writeAtomically(const Path& path, std::string_view bytes) = 0;

    /// Gives an existing file another name in the same folder; never replaces.
    virtual Result<> setAside(const Path& path, const Path& newName) = 0;

    /// Appends to a text file of CR LF lines (created with mode 0600 when missing). All or nothing: after a failed
    /// write the file is cut back to what it was. With `cutTornLine` a last line without its CR LF is removed first.
    virtual Result<> appendLines(const Path& path, std::string_view lines, bool cutTornLine) = 0;
    /// Brings an appended file to stable storage.
    virtual Result<> flush(const Path& path) = 0;

    /// Creates each missing level, private to the user (POSIX: 0700).
    virtual Result<> makePrivateFolders(const Path& path) = 0;
};

}  // namespace vantrell
