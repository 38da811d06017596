// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/files/output_parts.h"
#include "platform/files/place.h"

namespace vantrell {

/// A file that was renamed.
struct Moved {
    Place from;
    Place to;
    FileIdentity fromFolder;
    FileIdentity toFolder;
    FileIdentity file;
    bool hasReplaced = false;
};

/// Moves that are brought to stable storage together. Until then a crash of the machine may undo them; one that is
/// undone in part is not possible, which is why only file systems that order their changes of names get here.
class MoveGroup {
public:
    explicit MoveGroup(OutputParts& parts) : parts_(parts) {}

    void add(Moved moved);
    /// A folder whose file has gone elsewhere already: only its flush is due.
    void addSource(FileIdentity identity, UniqueFd folder) { sources_.try_emplace(identity, std::move(folder)); }
    [[nodiscard]] bool isFull() const;

    /// Flushes the folders, new names first. When that fails, the files are taken back to where they came from.
    Task<Result<>> flush();

private:
    using Folders = std::map<FileIdentity, UniqueFd>;
    struct Entry {
        FileIdentity fromFolder;
        FileIdentity toFolder;
        std::string fromName;
        std::string toName;
        FileIdentity file;
        bool hasReplaced;
    };

    Task<Result<>> flushAll(const Folders& folders);
    [[nodiscard]] bool takeBack(const Entry& entry) const;
    void takeBackAll(Fault& fault);

    OutputParts& parts_;
    Folders targets_;
    Folders sources_;
    std::vector<Entry> entries_;
};

}  // namespace vantrell
