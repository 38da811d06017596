// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/path.h"
#include "base/result.h"

namespace vantrell {

/// The small files of the program's own data folder. Every call runs to its end before it returns, and is made on the
/// one thread. Files and folders that are made here are private to the user.
class DataFiles {
public:
    DataFiles() = default;
    DataFiles(const DataFiles&) = delete;
    DataFiles& operator=(const DataFiles&) = delete;
    virtual ~DataFiles() = default;

    /// At most `limit` bytes from the beginning of a regular file.
    [[nodiscard]] virtual Result<std::string> read(const Path& path, std::size_t limit) const = 0;

    /// Replaces or creates the file: written under a temporary name in the same folder, brought to stable storage,
    /// given its name, and the folder brought there too. An existing file that may not be written, or is no regular
    /// file, is left as it is and reported. After a fault of the last step the new file bears the name, and a crash of
    /// the machine may undo that; after any other the old one is as it was.
    virtual Result<> writeAtomically(const Path& path, std::string_view bytes) = 0;

    /// Removes a file, and brings that to stable storage. Success also when there is none.
    virtual Result<> remove(const Path& path) = 0;

    /// Creates a file that is whole and on stable storage, with its folder, once it bears its name. Never replaces
    /// (`nameTaken`).
    virtual Result<> writeNew(const Path& path, std::string_view bytes) = 0;

    /// Gives an existing file another name in the same folder; never replaces.
    virtual Result<> setAside(const Path& path, const Path& newName) = 0;

    /// Gives an existing regular file a second name in the same folder, so that its contents outlive a replacement by
    /// `writeAtomically`. Where a file can have no second name, a copy with the same permissions gets it. On stable
    /// storage when it returns. Never replaces (`nameTaken`); a name that is this file's already is kept.
    virtual Result<> keepCopy(const Path& path, const Path& newName) = 0;

    /// Appends to a text file of CR LF lines (made when missing). All or nothing: after a failed
    /// write the file is cut back to what it was. With `cutTornEnd` what `cutTornEnd` would remove is removed first.
    /// The lines always begin on a line of their own.
    virtual Result<> appendLines(const Path& path, std::string_view lines, bool cutTornEnd) = 0;
    /// Removes, durably, what a crash has torn at the end of such a file: what follows the last CR LF, when that is at
    /// most 64 KiB and holds no line end. A file without any CR LF was not written by us, and stays as it is.
    virtual Result<> cutTornEnd(const Path& path) = 0;
    /// Brings an appended file to stable storage.
    virtual Result<> flush(const Path& path) = 0;

    /// Creates each missing level, private to the user. After a fault those above the one that failed are there.
    virtual Result<> makePrivateFolders(const Path& path) = 0;
    /// Takes away whatever rights others have on a file or folder of ours. Success also when there is none.
    virtual Result<> makePrivate(const Path& path) = 0;
};

}  // namespace vantrell
