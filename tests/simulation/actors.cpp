// SPDX-License-Identifier: MIT
#include "simulation/actors.h"

#include <algorithm>
#include <utility>

#include "base/path.h"
#include "platform/files/temporary_name.h"

namespace vantrell::test {

using vantrell::nameOf;

namespace {

// Below the quiet time of 5 s, with what the calls of others take in between.
constexpr std::chrono::milliseconds kLongestPause{4000};

bool isOurs(const std::string& path) {
    return isTemporaryName(nameOf(path)) || isTemporaryName(nameOf(folderOf(path)));
}

}  // namespace

Actors::Actors(World& world, Checker& checker, Chance& chance, const Hazards& hazards, const Trace& trace)
    : world_(world), checker_(checker), chance_(chance), hazards_(hazards), trace_(trace) {
    for (std::string& name : names_) name = chance_.pick(kFileNames);
}

std::string Actors::newContents() {
    const std::string number = std::to_string(++lastContent_);
    // Contents are told apart, so only one of them is empty.
    if (!std::exchange(isEmptyUsed_, isEmptyUsed_ || chance_.oneIn(30)) && isEmptyUsed_) return {};
    std::string bytes = "content " + number + ":";
    const std::uint64_t kind = chance_.below(10);
    bytes.append(kind < 7 ? chance_.below(40) : 16 * chance_.below(4), 'x');
    if (chance_.oneIn(hazards_.largeFile)) bytes.append((std::size_t{1} << 20U) + chance_.below(1000), 'y');
    return bytes;
}

// A link to one is none.
bool Actors::isFolder(const std::string& path) {
    const Spot spot = world_.others().at(path);
    return spot.node != kNoNode && S_ISDIR(spot.inode().mode);
}

std::string Actors::someFile(const std::string& folder) {
    std::vector<std::string> files = world_.filesBelow(folder);
    std::erase_if(files, isOurs);
    // Done or the rejected folder may lie in Source, and are not its files.
    for (const Where other : {Where::done, Where::rejected})
        if (folder != world_.folder(other))
            std::erase_if(files, [&](const std::string& path) { return path.starts_with(world_.folder(other) + "/"); });
    return files.empty() ? std::string() : chance_.pick(files);
}

// What others put in is on the disk before they say that it is there.
void Actors::put(const std::string& path, Where where) {
    if (world_.others().at(path).node != kNoNode) return;
    if (!world_.others().makeFile(path, newContents())) {
        world_.others().remove(path);
        world_.others().flush(folderOf(path));
        return;
    }
    world_.others().flush(path);
    checker_.put(path, where);
    told("put " + path);
}

void Actors::drop(const std::string& folder, const std::string& name) {
    const std::string path = folder + "/" + name;
    if (!isFolder(folder)) return;
    put(path, Where::source);
    if (world_.others().at(path).node != kNoNode && chance_.oneIn(20)) world_.others().at(path).inode().mode &= ~0222U;
}

void Actors::putFirstFiles() {
    for (std::uint64_t left = 1 + chance_.below(6); left > 0; --left)
        drop(chance_.pick(world_.sources()), chance_.pick(names_));
    if (!chance_.oneIn(3)) return;
    const std::string name = chance_.pick(names_);
    if (chance_.oneIn(2)) put(world_.folder(Where::destination) + "/" + name + ".enc", Where::destination);
    if (chance_.oneIn(2)) put(world_.folder(Where::done) + "/" + name, Where::done);
    if (chance_.oneIn(2)) put(world_.folder(Where::rejected) + "/" + name, Where::rejected);
}

std::optional<std::string> Actors::act() {
    // What would be put into an empty place is covered when the disk comes back.
    if (world_.isAnyOut()) return std::nullopt;
    switch (chance_.below(8)) {
        case 0:
        case 1:
            drop(chance_.pick(world_.sources()), chance_.pick(names_));
            return std::nullopt;
        case 2:
            return collect();
        case 3:
            beginWriting(someFile(world_.folder(Where::source)));
            return write();
        case 4:
            renameIn();
            return std::nullopt;
        case 5:
            swapFolder();
            return std::nullopt;
        case 6:
            takeFromSource();
            return std::nullopt;
        default: {
            const Where where = chance_.oneIn(2) ? Where::done : Where::destination;
            const std::string name = chance_.pick(names_);
            put(world_.folder(where) + "/" + name + (where == Where::done ? "" : ".enc"), where);
            return std::nullopt;
        }
    }
}

void Actors::takeFromSource() {
    const std::string path = someFile(world_.folder(Where::source));
    if (path.empty() || !chance_.oneIn(4) || world_.others().at(path).inode().writers != 0) return;
    checker_.othersAct(path);
    told("remove " + path);
    world_.others().remove(path);
    world_.others().flush(folderOf(path));
    checker_.othersActed();
}

// As careful programs write: under another name first, then over what stands there.
void Actors::renameIn() {
    const std::string path = chance_.pick(world_.sources()) + "/" + chance_.pick(names_);
    const std::string made = folderOf(path) + "/x.enc";
    const Spot there = world_.others().at(path);
    if (!isFolder(folderOf(path)) || nameOf(path) == "x.enc" || world_.others().at(made).node != kNoNode) return;
    // What stands there keeps its name, which may differ in case.
    const bool isAnother = there.node != kNoNode && there.inode().name != nameOf(path);
    if (isAnother || (there.node != kNoNode && (there.inode().writers != 0 || !S_ISREG(there.inode().mode)))) return;
    if (!world_.others().makeFile(made, newContents())) {
        world_.others().remove(made);
        world_.others().flush(folderOf(made));
        return;
    }
    world_.others().flush(made);
    checker_.othersAct(path);
    world_.others().rename(made, path);
    world_.others().flush(folderOf(path));
    checker_.put(path, Where::source);
    told("rename in " + path);
}

void Actors::beginWriting(const std::string& path) {
    const bool isWritten =
        std::any_of(writers_.begin(), writers_.end(), [&](const Writer& writer) { return writer.path == path; });
    if (path.empty() || isWritten) return;
    Writer writer{path, {}, 1 + static_cast<unsigned>(chance_.below(4)), world_.clock.sinceBoot()};
    writer.last = world_.others().contents(path);
    if (chance_.oneIn(2)) writer.held = world_.others().open(path, true);
    if (writer.last) writers_.push_back(std::move(writer));
}

bool Actors::isInDone(const Bytes& bytes) {
    for (const std::string& folder : {world_.folder(Where::done), world_.otherFolder(Where::done)})
        for (const std::string& path : world_.filesBelow(folder))
            if (*world_.others().contents(path) == *bytes) return true;
    return false;
}

std::optional<std::string> Actors::writeOnce(Writer& writer) {
    OtherPrograms& others = world_.others();
    const Bytes there = others.contents(writer.path);
    const bool isStill = there && writer.last && *there == *writer.last;
    // What goes to the rejected folder in the moment in which somebody begins to write is whole there.
    if (!isStill && writer.held && isInDone(writer.last) && !checker_.isWithoutOutput(writer.last))
        return writer.path + " was carried while somebody was still writing to it";
    if (!isStill) {
        writer.left = 0;
        return std::nullopt;
    }
    checker_.othersAct(writer.path);
    const std::string number = std::to_string(++lastContent_);
    const bool isAppended = writer.held || chance_.oneIn(2);
    if (isAppended)
        writer.held ? others.writeTo(*writer.held, "+" + number) : others.append(writer.path, "+" + number);
    else
        others.overwrite(writer.path, 0, "CONTENT " + number + ":");
    others.flush(writer.path);
    told((isAppended ? "append to " : "rewrite ") + writer.path);
    writer.last = others.contents(writer.path);
    // Who finds the disk full gives up.
    if (*writer.last == *there) writer.left = 1;
    if (*writer.last != *there) checker_.put(writer.path, Where::source);
    writer.next = world_.clock.sinceBoot() + std::chrono::milliseconds(chance_.below(kLongestPause.count()));
    --writer.left;
    return std::nullopt;
}

std::optional<std::string> Actors::write() {
    for (Writer& writer : writers_) {
        if (writer.next > world_.clock.sinceBoot()) continue;
        if (writer.left == 0) {
            if (writer.held) world_.others().close(*writer.held);
            writer.path.clear();
            continue;
        }
        if (std::optional<std::string> broken = writeOnce(writer)) return broken;
    }
    std::erase_if(writers_, [](const Writer& writer) { return writer.path.empty(); });
    return std::nullopt;
}

void Actors::forget(bool closing) {
    for (const Writer& writer : writers_)
        if (closing && writer.held) world_.others().close(*writer.held);
    writers_.clear();
}

std::optional<std::string> Actors::collect() {
    const std::string path = someFile(world_.folder(Where::destination));
    if (!path.ends_with(".enc")) return std::nullopt;
    std::optional<std::string> broken = checker_.collects(path);
    told("collect " + path);
    world_.others().remove(path);
    world_.others().flush(folderOf(path));
    checker_.othersActed();
    return broken;
}

// A folder in Source becomes a link to one that lies outside, or is what it was again.
void Actors::swapFolder() {
    OtherPrograms& others = world_.others();
    const std::string folder = world_.sources()[1];
    const std::string aside = folder + ".aside";
    const Spot there = others.at(folder);
    const bool isLink = there.node != kNoNode && S_ISLNK(there.inode().mode);
    // Whoever writes there would not know where his file is.
    if (!writers_.empty() || (!isLink && !isFolder(folder))) return;
    if (isLink) others.remove(folder);
    if (isLink)
        others.rename(aside, folder);
    else if (others.rename(folder, aside))
        others.makeLink(world_.folder(Where::outside), folder);
    others.flush(folderOf(folder));
    told("swap " + folder);
    checker_.pathsChange(folder);
    checker_.othersActed();
}

}  // namespace vantrell::test
