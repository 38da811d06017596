// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/move_group.h"
#include "platform/files/output_parts.h"
#include "platform/files/place.h"
#include "platform/files/standing_file.h"
#include "platform/files/use_probe.h"

namespace vantrell {

/// Brings files to another place. Success: the file is at the target, and no crash undoes it, unless it was to be
/// flushed later. A fault: nothing has changed, or the text says where the file stands. An abort: the source is whole,
/// under its name or where the next start finds it.
class FileMover {
public:
    FileMover(OutputParts& parts, UseProbe& probe) : parts_(parts), probe_(probe), group_(parts) {}

    enum class Reach { oneFileSystem, anywhere };
    Task<Result<>> move(MoveOrder order, Reach reach);
    Task<Result<>> flushMoves();

private:
    enum class Kind { plain, taken, samePlace, secondName };

    // What a move is about, as it was before the first step.
    struct Route {
        Place from;
        Place to;
        FileIdentity fromFolder;
        FileIdentity toFolder;
        struct stat source {};
        Kind kind = Kind::plain;
        bool replaces = false;
        bool isVerified = false;  ///< just now
    };

    Result<Route> survey(const MoveOrder& order);
    static Result<> surveyTarget(Route& route);
    Task<Result<>> go(MoveOrder order, Route& route, Reach reach);
    Task<Result<bool>> equalsTarget(MoveOrder order, PosixStandingFile& standing);
    Task<Result<>> arrive(MoveOrder order, Route& route, PosixStandingFile& standing);
    Task<Result<>> removeArrived(MoveOrder order, Route& route, PosixStandingFile& standing);
    [[nodiscard]] bool isOrdered(const Route& route);
    Task<Result<>> renameIt(MoveOrder order, Route& route, Reach reach);
    Task<Result<>> linkIt(MoveOrder order, Route& route, Reach reach);
    Task<Result<>> copyIt(MoveOrder order, Route& route);
    static bool putBack(const Route& route);
    Task<Result<>> confirm(Route& route, Durable durable);
    Task<Result<>> flushLater(Route& route);
    Task<Result<>> flushFolders(Route& route);
    Task<Result<>> flushSource(Route& route, Durable durable);
    Task<Result<>> dropSourceName(MoveOrder order, Route& route);

    OutputParts& parts_;
    UseProbe& probe_;
    MoveGroup group_;
    Result<> groupFlushed_;  ///< a fault of which no move has told
};

}  // namespace vantrell
