// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/output_parts.h"
#include "platform/files/place.h"
#include "platform/files/source_removal.h"

namespace vantrell {

/// Brings a file to another folder of its file system where that does not order its changes of names. A rename is two
/// changes there, a new name and an old one that goes, and each of them reaches the disk on its own: after a power cut
/// the file could have neither, and a flush afterwards comes too late. So it gets the new name first, that is flushed
/// with the file, and only then the old one goes.
class LinkMover {
public:
    /// Everything outlives the mover. `source` is what stands at `from`.
    LinkMover(OutputParts& parts, const Place& from, const Place& to, const struct stat& source, bool isReplacing);
    LinkMover(const LinkMover&) = delete;
    LinkMover& operator=(const LinkMover&) = delete;
    /// Takes the new name away again, unless the move has come so far that it must stay.
    ~LinkMover();

    /// Gives the second name. 0 or the error number; with one, nothing has changed.
    [[nodiscard]] int link();
    /// Whether the error says that this file can have no second name.
    [[nodiscard]] static bool cannotBeLinked(int error);
    /// After `link`. The old name's folder is still to be flushed.
    Task<Result<>> finish();

private:
    Task<Result<>> settleNewName();

    OutputParts& parts_;
    const Place& from_;
    const Place& to_;
    const struct stat source_;
    const bool isReplacing_;
    SourceRemoval removal_;
    std::string newName_;  ///< to be taken away again; empty: none
    UniqueFd file_;
};

}  // namespace vantrell
