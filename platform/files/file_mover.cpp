// SPDX-License-Identifier: MIT
#include "platform/files/file_mover.h"

#include <algorithm>
#include <utility>

#include "platform/files/cross_mover.h"
#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/held_file.h"
#include "platform/files/link_mover.h"
#include "platform/files/move_fault.h"
#include "platform/files/posix_fault.h"
#include "platform/files/safe_rename.h"

namespace vantrell {

namespace {

constexpr char kCannotBeMoved[] = "The file cannot be moved";
constexpr std::size_t kPiece = std::size_t{256} << 10U;
constexpr int kReadFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

Result<FileIdentity> identityOfFolder(const UniqueFd& folder) {
    struct stat status {};
    if (const int error = folder.status(status); error != 0)
        return outputFault(error, "The folder cannot be looked at");
    return identityOf(status);
}

bool standsAt(const Place& place, const FileIdentity& file) {
    struct stat status {};
    return place.status(status) == 0 && identityOf(status) == file;
}

bool isAsSurveyed(const Place& place, const struct stat& surveyed) {
    struct stat now {};
    return place.status(now) == 0 && isUnwritten(now, stampOf(surveyed));
}

// Reads until `into` is full or the file ends.
template <class File>
Result<std::size_t> fill(File& file, std::span<std::byte> into) {
    std::size_t filled = 0;
    while (filled < into.size()) {
        const Result<std::size_t> got = file.read(into.subspan(filled));
        if (!got.ok()) return got.fault();
        if (got.value() == 0) break;
        filled += got.value();
    }
    return filled;
}

}  // namespace

Result<FileMover::Route> FileMover::survey(const MoveOrder& order) {
    Result<Place> from = parts_.source.openPlace(parts_.kernel, order.source);
    if (!from.ok()) return from.fault();
    Result<Place> to = placeIn(parts_.targets.open(parts_.kernel, folderOf(order.target)), order.target);
    if (!to.ok()) return to.fault();
    const Result<FileIdentity> fromFolder = identityOfFolder(from.value().folder);
    if (!fromFolder.ok()) return fromFolder.fault();
    const Result<FileIdentity> toFolder = identityOfFolder(to.value().folder);
    if (!toFolder.ok()) return toFolder.fault();
    Route route{from.take(), to.take(), fromFolder.value(), toFolder.value()};
    if (const int error = route.from.status(route.source); error != 0)
        return sourceFault(error, "The file cannot be found");
    if (!S_ISREG(route.source.st_mode)) return notRegularFault();
    if (route.from.name == route.to.name && route.fromFolder == route.toFolder) {
        route.kind = Kind::samePlace;
        return route;
    }
    if (Result<> done = surveyTarget(route); !done.ok()) return done.fault();
    return route;
}

Result<> FileMover::surveyTarget(Route& route) {
    struct stat target {};
    const int error = route.to.status(target);
    if (error == ENOENT) return {};
    if (error != 0) return outputFault(error, "The target cannot be looked at");
    if (identityOf(target) == identityOf(route.source)) {
        // A single link under two names: the file system does not tell the names apart, so there is but one place.
        route.kind = target.st_nlink > 1 ? Kind::secondName : Kind::samePlace;
        return {};
    }
    if (!S_ISREG(target.st_mode)) return outputFault(EEXIST, kCannotBeMoved);
    route.kind = Kind::taken;
    return {};
}

Task<Result<>> FileMover::move(MoveOrder order, Reach reach) {
    Result<Route> surveyed = survey(order);
    if (!surveyed.ok()) co_return surveyed.fault();
    Route& route = surveyed.value();
    if (order.expected != nullptr) {
        if (Result<> done = order.expected->verify(); !done.ok()) co_return done.fault();
    }
    if (route.kind == Kind::samePlace) co_return Result<>();
    if (route.kind == Kind::secondName) co_return co_await dropSourceName(std::move(order), route);
    // Nothing comes between that look and the move.
    route.isVerified = order.expected != nullptr && route.kind == Kind::plain;
    if (route.kind == Kind::plain) co_return co_await go(std::move(order), route, reach);
    if (order.onEqual != OnEqual::isAnother && order.expected != nullptr) {
        Result<std::unique_ptr<PosixStandingFile>> standing = PosixStandingFile::open(parts_, probe_, order.target);
        if (!standing.ok() && standing.fault().isTheMachines()) co_return standing.fault();
        const Result<bool> equal =
            standing.ok() ? co_await equalsTarget(order, *standing.value()) : Result<bool>(false);
        if (!equal.ok()) co_return equal.fault();
        const bool isEqual = equal.value();
        if (isEqual && order.onEqual == OnEqual::isTheSame) co_return co_await arrive(order, route, *standing.value());
        if (isEqual) order.replace = Replace::allowed;
    }
    if (order.replace == Replace::never) co_return outputFault(EEXIST, kCannotBeMoved);
    route.replaces = true;
    co_return co_await go(std::move(order), route, reach);
}

Task<Result<bool>> FileMover::equalsTarget(MoveOrder order, PosixStandingFile& standing) {
    if (standing.size() != order.expected->size()) co_return false;
    order.expected->rewind();
    std::vector<std::byte> one(kPiece);
    std::vector<std::byte> other(kPiece);
    for (std::uint64_t compared = 0; compared < standing.size();) {
        const Result<std::size_t> count = fill(*order.expected, one);
        if (!count.ok()) co_return count.fault();
        const Result<std::size_t> same = fill(standing, std::span(other).first(count.value()));
        // What stands there may be this very file: that it cannot be read must not end in a question.
        if (!same.ok()) co_return Fault{FaultKind::machine, same.fault().text};
        if (count.value() == 0 || same.value() != count.value()) co_return false;
        if (!std::equal(one.begin(), one.begin() + static_cast<std::ptrdiff_t>(count.value()), other.begin()))
            co_return false;
        compared += count.value();
        co_await parts_.loop.breathe();
    }
    co_return true;
}

// The original came here in an earlier try, which has not come to its end.
Task<Result<>> FileMover::arrive(MoveOrder order, Route& route, PosixStandingFile& standing) {
    const Result<> removed = co_await removeArrived(order, route, standing);
    if (!removed.ok()) co_return removed.fault();
    parts_.made.insert(standing.identity());
    co_return co_await flushSource(route, order.durable);
}

Task<Result<>> FileMover::removeArrived(MoveOrder order, Route& route, PosixStandingFile& standing) {
    SourceRemoval removal(parts_, route.from, route.to);
    if (removal.error() != 0) co_return moveFault(route.to, removal.error(), kCannotBeMoved);
    if (const Result<> done = co_await standing.confirmArrival(); !done.ok()) co_return done.fault();
    if (const Result<> done = order.expected->verify(); !done.ok()) co_return done.fault();
    if (!standsAt(route.to, standing.identity())) co_return inUseFault();
    co_return co_await removal.remove(stampOf(route.source), {}, standing.identity());
}

bool FileMover::isOrdered(const Route& route) {
    const auto orders = [this](const Place& place, const FileIdentity& folder) {
        return parts_.systems.of(place.folder, folder.device).ordersRenames;
    };
    return orders(route.from, route.fromFolder) && orders(route.to, route.toFolder);
}

Task<Result<>> FileMover::go(MoveOrder order, Route& route, Reach reach) {
    if (isOrdered(route)) co_return co_await renameIt(std::move(order), route, reach);
    co_return co_await linkIt(std::move(order), route, reach);
}

Task<Result<>> FileMover::copyIt(MoveOrder order, Route& route) {
    CrossMover across(parts_, probe_, route.from, route.to);
    // What stands there and is to be replaced is replaced by the copy.
    co_return co_await across.move(std::move(order), identityOf(route.source));
}

Task<Result<>> FileMover::renameIt(MoveOrder order, Route& route, Reach reach) {
    const Place& from = route.from;
    const Place& to = route.to;
    // A file that was changed keeps its place: moved and put back, it would be without its output for a moment.
    if (!route.isVerified && !isAsSurveyed(from, route.source)) co_return inUseFault();
    const int error = route.replaces ? parts_.kernel.renameat2(from.folder.get(), from.name.c_str(), to.folder.get(),
                                                               to.name.c_str(), 0)
                                     : renameInOneStep(from.folder, from.name, to.folder, to.name);
    // Between a link and the removal of the old name, another file could take that name.
    if (needsTwoSteps(error) && !route.replaces) co_return co_await linkIt(std::move(order), route, reach);
    if (error == EXDEV && reach == Reach::anywhere) co_return co_await copyIt(std::move(order), route);
    if (error != 0) co_return moveFault(to, error, kCannotBeMoved);
    co_return co_await confirm(route, order.durable);
}

Task<Result<>> FileMover::linkIt(MoveOrder order, Route& route, Reach reach) {
    {
        LinkMover linked(parts_, route.from, route.to, route.source, route.replaces);
        const int error = linked.link();
        const bool isCopied = LinkMover::cannotBeLinked(error) && (error != EXDEV || reach == Reach::anywhere);
        if (isCopied) co_return co_await copyIt(std::move(order), route);
        if (error == EBUSY) co_return inUseFault();
        if (error != 0) co_return moveFault(route.to, error, kCannotBeMoved);
        if (const Result<> done = co_await linked.finish(); !done.ok()) co_return done.fault();
    }
    co_return co_await flushSource(route, order.durable);
}

bool FileMover::putBack(const Route& route) {
    return !route.replaces && renameNoReplace(route.to.folder, route.to.name, route.from.folder, route.from.name) == 0;
}

Task<Result<>> FileMover::confirm(Route& route, Durable durable) {
    // Somebody may have put another file there, or written to this one, after the last look.
    if (!isAsSurveyed(route.to, route.source)) {
        Fault fault = inUseFault();
        if (!putBack(route)) fault.text += "; it stands in the target folder now";
        static_cast<void>(co_await flushFolders(route));
        co_return fault;
    }
    parts_.made.insert(identityOf(route.source));
    renewChangeTime(route.to.folder, route.to.name.c_str(), route.source);
    if (durable == Durable::later) co_return co_await flushLater(route);
    const Result<> flushed = co_await flushFolders(route);
    if (flushed.ok()) co_return flushed;
    Fault fault = flushed.fault();
    if (standsAt(route.to, identityOf(route.source)) && !putBack(route))
        fault.text += "; the file stands in the target folder now";
    co_return fault;
}

// The new name first: both names are better than none.
Task<Result<>> FileMover::flushFolders(Route& route) {
    if (Result<> done = co_await flushFolder(parts_, route.to.folder); !done.ok()) co_return done.fault();
    if (route.fromFolder == route.toFolder) co_return Result<>();
    co_return co_await flushFolder(parts_, route.from.folder);
}

// The file stands at its target whatever this says: at worst it is in Source again after a crash.
Task<Result<>> FileMover::flushSource(Route& route, Durable durable) {
    if (durable == Durable::later)
        group_.addSource(route.fromFolder, std::move(route.from.folder));
    else
        static_cast<void>(co_await flushFolder(parts_, route.from.folder));
    co_return Result<>();
}

// A fault of the full group concerns this file as well, which has been taken back with the others, unless it has
// replaced one: then it stays, and whoever asks for the group is told.
Task<Result<>> FileMover::flushLater(Route& route) {
    group_.add({std::move(route.from), std::move(route.to), route.fromFolder, route.toFolder, identityOf(route.source),
                route.replaces});
    if (!group_.isFull()) co_return Result<>();
    Result<> flushed = co_await group_.flush();
    if (route.replaces) groupFlushed_ = std::exchange(flushed, Result<>());
    co_return flushed;
}

Task<Result<>> FileMover::flushMoves() {
    const Result<> last = co_await group_.flush();
    const Result<> earlier = std::exchange(groupFlushed_, Result<>());
    co_return earlier.ok() ? last : earlier;
}

// Both names lead to one file, which a crash between the two steps of a move has left.
Task<Result<>> FileMover::dropSourceName(MoveOrder order, Route& route) {
    {
        const UniqueFd file = route.to.folder.open(route.to.name.c_str(), kReadFlags);
        if (file) {
            if (const Result<> done = co_await flushFile(parts_, file); !done.ok()) co_return done.fault();
        }
        if (Result<> done = co_await flushFolder(parts_, route.to.folder); !done.ok()) co_return done.fault();
        SourceRemoval removal(parts_, route.from, route.to);
        if (removal.error() != 0) co_return moveFault(route.to, removal.error(), kCannotBeMoved);
        const FileIdentity identity = identityOf(route.source);
        const Result<> removed = co_await removal.remove(stampOf(route.source), {}, identity);
        if (!removed.ok()) co_return removed.fault();
    }
    parts_.made.insert(identityOf(route.source));
    co_return co_await flushSource(route, order.durable);
}

}  // namespace vantrell
