// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include "platform/file_toolbox.h"
#include "platform/files/output_file.h"
#include "platform/files/place.h"
#include "platform/files/use_probe.h"

namespace vantrell {

/// Brings files to another place. Success: the file is at the target, and no crash undoes it. A fault: nothing has
/// changed. An abort: the source is whole, under its name or where the next start finds it.
class FileMover {
public:
    FileMover(OutputParts& parts, UseProbe& probe) : parts_(parts), probe_(probe) {}

    enum class Reach { oneFileSystem, anywhere };
    Task<FileFault> move(MoveOrder order, Reach reach);
    Task<FileFault> flushMoves();

private:
    enum class Kind { plain, replacing, samePlace, secondName };

    // What a move is about, as it was before the first step.
    struct Route {
        Place from;
        Place to;
        struct stat source {};
        Kind kind = Kind::plain;
    };

    using Folders = std::map<FileIdentity, UniqueFd>;

    static FileFault survey(const MoveOrder& order, Route& route);
    static FileFault surveyTarget(const MoveOrder& order, Route& route);
    static int renameOnce(const Route& route);
    static bool putBack(const Route& route);
    Task<FileFault> confirm(Route& route, Durable durable);
    Task<FileFault> flushLater(Route& route);
    Task<FileFault> flushFolders(Route& route);
    Task<FileFault> flushAll(Folders& folders);
    Task<FileFault> dropSourceName(Route& route);

    OutputParts& parts_;
    UseProbe& probe_;
    // Folders with moves that are to be flushed later.
    Folders unflushedTargets_;
    Folders unflushedSources_;
    unsigned unflushedMoves_ = 0;
};

}  // namespace vantrell
