// SPDX-License-Identifier: MIT
#include "platform/files/file_mover.h"

#include <utility>

#include "platform/files/cross_mover.h"
#include "platform/files/file_attributes.h"
#include "platform/files/folder_flush.h"
#include "platform/files/held_file.h"
#include "platform/files/posix_fault.h"
#include "platform/files/safe_rename.h"

namespace vantrell {

namespace {

constexpr unsigned kMostUnflushedMoves = 256;

Result<FileIdentity> identityOfFolder(const UniqueFd& folder) {
    struct stat status {};
    if (const int error = folder.status(status); error != 0)
        return faultFromErrno(error, "The folder cannot be looked at");
    return identityOf(status);
}

bool standsAt(const Place& place, const FileIdentity& file) {
    struct stat status {};
    return place.status(status) == 0 && identityOf(status) == file;
}

}  // namespace

Result<FileMover::Route> FileMover::survey(const MoveOrder& order) {
    Result<Place> from = openPlace(parts_.kernel, order.source);
    if (!from.ok()) return from.fault();
    Result<Place> to = openPlace(parts_.kernel, order.target);
    if (!to.ok()) return to.fault();
    const Result<FileIdentity> fromFolder = identityOfFolder(from.value().folder);
    if (!fromFolder.ok()) return fromFolder.fault();
    const Result<FileIdentity> toFolder = identityOfFolder(to.value().folder);
    if (!toFolder.ok()) return toFolder.fault();
    Route route{from.take(), to.take(), fromFolder.value(), toFolder.value()};
    if (const int error = route.from.status(route.source); error != 0)
        return faultFromErrno(error, "The file cannot be found");
    if (!S_ISREG(route.source.st_mode)) return notRegularFault();
    if (route.from.name == route.to.name && route.fromFolder == route.toFolder) {
        route.kind = Kind::samePlace;
        return route;
    }
    if (Result<> done = surveyTarget(order, route); !done.ok()) return done.fault();
    return route;
}

Result<> FileMover::surveyTarget(const MoveOrder& order, Route& route) {
    struct stat target {};
    const int error = route.to.status(target);
    if (error == ENOENT) return {};
    if (error != 0) return faultFromErrno(error, "The target cannot be looked at");
    if (identityOf(target) == identityOf(route.source)) {
        // A single link under two names: the file system does not tell the names apart, so there is but one place.
        route.kind = target.st_nlink > 1 ? Kind::secondName : Kind::samePlace;
        return {};
    }
    if (order.replace == Replace::never || !S_ISREG(target.st_mode))
        return faultFromErrno(EEXIST, "The file cannot be moved");
    route.kind = Kind::replacing;
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
    if (route.kind == Kind::secondName) co_return co_await dropSourceName(route);
    const int error = renameOnce(route);
    if (error == EXDEV && reach == Reach::anywhere) {
        CrossMover across(parts_, probe_, route.from, route.to);
        co_return co_await across.move(std::move(order), identityOf(route.source));
    }
    if (error != 0) co_return faultFromErrno(error, "The file cannot be moved");
    co_return co_await confirm(route, order.durable);
}

int FileMover::renameOnce(const Route& route) {
    const Place& from = route.from;
    const Place& to = route.to;
    if (route.kind != Kind::replacing) return renameNoReplace(from.folder, from.name, to.folder, to.name);
    return from.folder.kernel().renameat2(from.folder.get(), from.name.c_str(), to.folder.get(), to.name.c_str(), 0);
}

bool FileMover::putBack(const Route& route) {
    return renameNoReplace(route.to.folder, route.to.name, route.from.folder, route.from.name) == 0;
}

Task<Result<>> FileMover::confirm(Route& route, Durable durable) {
    if (!standsAt(route.to, identityOf(route.source))) {
        Fault fault = inUseFault();
        if (!putBack(route)) fault.text += "; it stands in the target folder now";
        co_return fault;
    }
    renewChangeTime(route.to.folder, route.to.name.c_str(), route.source);
    if (durable == Durable::later) {
        co_await flushLater(route);
        co_return Result<>();
    }
    const Result<> flushed = co_await flushFolders(route);
    if (flushed.ok()) co_return flushed;
    Fault fault = flushed.fault();
    if (standsAt(route.to, identityOf(route.source)) && !putBack(route))
        fault.text += "; the file stands in the target folder now";
    co_return fault;
}

Task<Result<>> FileMover::flushFolders(Route& route) {
    // The new name first: where a rename is not one step on the disk, both names are better than none.
    if (Result<> done = co_await flushFolder(parts_.loop, route.to.folder); !done.ok()) co_return done.fault();
    if (route.fromFolder == route.toFolder) co_return Result<>();
    co_return co_await flushFolder(parts_.loop, route.from.folder);
}

Task<void> FileMover::flushLater(Route& route) {
    unflushedTargets_.try_emplace(route.toFolder, std::move(route.to.folder));
    unflushedSources_.try_emplace(route.fromFolder, std::move(route.from.folder));
    if (++unflushedMoves_ < kMostUnflushedMoves) co_return;
    const Result<> flushed = co_await flushGroup();
    // It says nothing of the file that has just been moved; whoever asks for the group is told.
    if (groupsFlushed_.ok()) groupsFlushed_ = flushed;
}

// The new names first, as in `flushFolders`.
Task<Result<>> FileMover::flushGroup() {
    unflushedMoves_ = 0;
    const Result<> targets = co_await flushAll(unflushedTargets_);
    if (!targets.ok()) co_return targets;
    co_return co_await flushAll(unflushedSources_);
}

Task<Result<>> FileMover::flushMoves() {
    const Result<> last = co_await flushGroup();
    const Result<> earlier = std::exchange(groupsFlushed_, Result<>());
    co_return earlier.ok() ? last : earlier;
}

Task<Result<>> FileMover::flushAll(Folders& folders) {
    Result<> all;
    while (!folders.empty()) {
        const auto folder = folders.extract(folders.begin());
        const Result<> flushed = co_await flushFolder(parts_.loop, folder.mapped());
        if (!flushed.ok()) all = flushed;
    }
    co_return all;
}

Task<Result<>> FileMover::dropSourceName(Route& route) {
    if (Result<> done = co_await flushFolder(parts_.loop, route.to.folder); !done.ok()) co_return done.fault();
    const FileIdentity file = identityOf(route.source);
    if (!standsAt(route.from, file) || !standsAt(route.to, file)) co_return inUseFault();
    if (const int error = route.from.folder.unlink(route.from.name.c_str()); error != 0)
        co_return faultFromErrno(error, "The file's second name cannot be removed");
    co_return co_await flushFolder(parts_.loop, route.from.folder);
}

}  // namespace vantrell
