// SPDX-License-Identifier: MIT
#pragma once

#include <map>

#include "platform/file_toolbox.h"
#include "platform/files/output_file.h"
#include "platform/files/place.h"
#include "platform/files/use_probe.h"

namespace vantrell {

/// Brings files to another place. Success: the file is at the target, and no crash undoes it, unless it was to be
/// flushed later. A fault: nothing has changed, or the text says where the file stands. An abort: the source is whole,
/// under its name or where the next start finds it.
class FileMover {
public:
    FileMover(OutputParts& parts, UseProbe& probe) : parts_(parts), probe_(probe) {}

    enum class Reach { oneFileSystem, anywhere };
    Task<Result<>> move(MoveOrder order, Reach reach);
    Task<Result<>> flushMoves();

private:
    enum class Kind { plain, replacing, samePlace, secondName };

    // What a move is about, as it was before the first step.
    struct Route {
        Place from;
        Place to;
        FileIdentity fromFolder;
        FileIdentity toFolder;
        struct stat source {};
        Kind kind = Kind::plain;
    };

    using Folders = std::map<FileIdentity, UniqueFd>;

    Result<Route> survey(const MoveOrder& order);
    static Result<> surveyTarget(const MoveOrder& order, Route& route);
    static int renameOnce(const Route& route);
    static bool putBack(const Route& route);
    Task<Result<>> confirm(Route& route, Durable durable);
    Task<void> flushLater(Route& route);
    Task<Result<>> flushGroup();
    Task<Result<>> flushFolders(Route& route);
    Task<Result<>> flushAll(Folders& folders);
    Task<Result<>> dropSourceName(Route& route);

    OutputParts& parts_;
    UseProbe& probe_;
    // Folders with moves that are to be flushed later.
    Folders unflushedTargets_;
    Folders unflushedSources_;
    unsigned unflushedMoves_ = 0;
    Result<> groupsFlushed_;  ///< of the groups since the last `flushMoves`, the first that failed
};

}  // namespace vantrell
