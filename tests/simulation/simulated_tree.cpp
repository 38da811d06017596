// SPDX-License-Identifier: MIT
#include "simulation/simulated_tree.h"

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <cerrno>

namespace vantrell::test {

namespace {

constexpr unsigned kMostLinks = 40;

std::string escaped(std::string_view text) {
    std::string shown;
    for (const char letter : text) shown += letter == ' ' ? "\\040" : std::string(1, letter);
    return shown;
}

std::string numbersOf(dev_t device) { return std::to_string(major(device)) + ":" + std::to_string(minor(device)); }

bool isFolder(const Spot& spot) { return S_ISDIR(spot.inode().mode); }

}  // namespace

SimulatedTree::SimulatedTree(SimulatedClock& clock, SimulatedDisk& root, std::uint64_t seed)
    : clock_(clock), root_(&root), chance_(seed) {
    mount("/", root);
}

// Each level of links takes one off `linksLeft`.
struct SimulatedTree::Walk {
    const SimulatedTree& tree;
    Spot start;
    Way way;
    unsigned linksLeft = kMostLinks;

    int enter(Target& into, std::string_view name, bool isLast) {
        const Spot at = into.file;
        if (at.node == kNoNode) return ENOENT;
        if (!isFolder(at)) return ENOTDIR;
        if (name == "..") {
            if (way.beneath && at == start) return EXDEV;
            const Spot parent = tree.parentOf(at);
            into = {parent, "", parent, false};
            return 0;
        }
        if (name == ".") {
            into = {at, "", at, false};
            return 0;
        }
        if (name.size() > at.disk->traits.longestName) return ENAMETOOLONG;
        into = {at, name, {at.disk, at.disk->find(at.node, name)}, false};
        if (into.file.node == kNoNode) return 0;
        const Inode& inode = into.file.inode();
        if (inode.covering != nullptr) into.file = {inode.covering, kRootNode};
        if (!S_ISLNK(inode.mode) || (isLast && !way.followLast)) return 0;
        if (way.noLinks || linksLeft-- == 0) return ELOOP;
        return follow(at, *inode.bytes, into);
    }

    int follow(Spot at, std::string_view path, Target& into) {
        if (path.empty()) return ENOENT;
        if (path.size() >= PATH_MAX) return ENAMETOOLONG;
        if (path.front() == '/' && way.beneath) return EXDEV;
        if (path.front() == '/') at = tree.root();
        into = {at, "", at, false};
        for (;;) {
            const std::size_t begin = path.find_first_not_of('/');
            into.isFolderWanted = begin != 0;
            if (begin == std::string_view::npos) break;
            const std::size_t end = std::min(path.find('/', begin), path.size());
            const std::string_view name = path.substr(begin, end - begin);
            path.remove_prefix(end);
            if (const int error = enter(into, name, path.empty()); error != 0) return error;
            if (path.empty()) return 0;
        }
        return into.file.node != kNoNode && !isFolder(into.file) ? ENOTDIR : 0;
    }
};

int SimulatedTree::resolve(Spot start, std::string_view path, Way way, Target& into) const {
    return Walk{*this, start, way}.follow(start, path, into);
}

const SimulatedTree::Mount* SimulatedTree::mountOf(const SimulatedDisk* disk) const {
    for (const Mount& mount : mounts_) {
        if (mount.disk == disk) return &mount;
    }
    return nullptr;
}

Spot SimulatedTree::parentOf(Spot folder) const {
    if (folder == root()) return folder;
    if (folder.node != kRootNode) return {folder.disk, folder.inode().folder};
    const Mount* const mount = mountOf(folder.disk);
    return mount == nullptr ? folder : parentOf(mount->covered);
}

std::string SimulatedTree::pathOf(Spot spot) const {
    std::string path;
    while (spot.disk != nullptr && spot.node != kRootNode) {
        const Inode& inode = spot.inode();
        if (inode.folder == kNoNode) return "(nameless)" + path;
        path.insert(0, "/" + inode.name);
        spot.node = inode.folder;
    }
    const Mount* const mount = mountOf(spot.disk);
    if (mount == nullptr) return "(not mounted)" + path;
    if (mount->point != "/") path.insert(0, mount->point);
    return path.empty() ? "/" : path;
}

void SimulatedTree::attach(Mount& mount) {
    mount.id = mount.disk->mountId = ++lastMountId_;
    if (mount.point == "/") return;
    Target target;
    for (std::size_t end = 0; end != std::string::npos;) {
        end = mount.point.find('/', end + 1);
        const std::string path = mount.point.substr(0, end);
        if (resolve(root(), path, {}, target) != 0) return;
        Node made = target.file.node;
        if (made != kNoNode || makeEntry(target, S_IFDIR | 0755U, made) != 0) continue;
        target.file = {target.folder.disk, made};
        target.folder.disk->flushNow(target.folder.node, true);
    }
    mount.covered = target.file;
    mount.parent = mount.covered.disk->mountId;
    mount.covered.inode().covering = mount.disk;
}

void SimulatedTree::mount(const std::string& point, SimulatedDisk& disk) {
    disk.renumber(chance_);
    mounts_.push_back({point, &disk, 0, 0, {}});
    attach(mounts_.back());
}

void SimulatedTree::unmount(const std::string& point) {
    for (Mount& mount : mounts_) {
        if (mount.point == point && mount.covered.disk != nullptr) mount.covered.inode().covering = nullptr;
    }
    std::erase_if(mounts_, [&](const Mount& mount) { return mount.point == point; });
}

void SimulatedTree::mountAgain() {
    for (Mount& mount : mounts_) {
        mount.disk->renumber(chance_);
        attach(mount);
    }
}

SimulatedDisk* SimulatedTree::mountedAt(const std::string& point) const {
    for (const Mount& mount : mounts_) {
        if (mount.point == point) return mount.disk;
    }
    return nullptr;
}

std::string SimulatedTree::virtualText(std::string_view path) const {
    std::string table;
    for (const Mount& mount : mounts_) {
        const DiskTraits& traits = mount.disk->traits;
        const std::string device = traits.source.substr(traits.source.rfind('/') + 1);
        if (path == "/sys/dev/block/" + numbersOf(traits.device) + "/uevent" && traits.source.starts_with("/dev/"))
            return "MAJOR=" + std::to_string(major(traits.device)) + "\nMINOR=" + std::to_string(minor(traits.device)) +
                   "\nDEVNAME=" + device + "\nDEVTYPE=partition\n";
        if (traits.type == "ext4" && path == "/sys/fs/ext4/" + device + "/journal_task")
            return traits.hasJournal ? "217\n" : "<none>\n";
        table += std::to_string(mount.id) + " " + std::to_string(mount.parent) + " " + numbersOf(traits.device) +
                 " / " + escaped(mount.point) + " rw,relatime shared:1 - " + traits.type + " " +
                 escaped(traits.source) + " rw\n";
    }
    return path == "/proc/self/mountinfo" ? table : "";
}

int SimulatedTree::makeEntry(const Target& target, mode_t mode, Node& made) {
    SimulatedDisk& disk = *target.folder.disk;
    if (target.file.node != kNoNode) return EEXIST;
    if (target.folder.inode().links == 0) return ENOENT;
    if (disk.free() == 0) return ENOSPC;
    made = disk.create(mode, now());
    disk.beginStep();
    disk.setName(target.folder.node, target.name, made, now());
    return 0;
}

int SimulatedTree::link(Spot file, const Target& to) {
    SimulatedDisk& disk = *to.folder.disk;
    const Inode& inode = file.inode();
    if (to.file.node != kNoNode) return EEXIST;
    if (to.isFolderWanted || to.folder.inode().links == 0) return ENOENT;
    if (file.disk != &disk) return EXDEV;
    if (!disk.traits.hasHardLinks || S_ISDIR(inode.mode)) return EPERM;
    if (inode.links == 0 && !inode.bornNameless) return ENOENT;
    if (disk.free() == 0) return ENOSPC;
    disk.beginStep();
    disk.setName(to.folder.node, to.name, file.node, now());
    return 0;
}

int SimulatedTree::rename(const Target& from, const Target& to, unsigned flags) {
    constexpr unsigned kNoReplace = 1;
    SimulatedDisk& disk = *from.folder.disk;
    if ((flags & ~kNoReplace) != 0) return EINVAL;
    if (&disk != to.folder.disk) return EXDEV;
    if (from.name.empty()) return EBUSY;
    if (to.name.empty()) return flags != 0 ? EEXIST : EBUSY;
    if (from.file.node == kNoNode || to.folder.inode().links == 0) return ENOENT;
    if (to.file.node != kNoNode && flags != 0) return EEXIST;
    for (Spot above = to.folder; isFolder(from.file) && above != root(); above = parentOf(above)) {
        if (above == from.file) return EINVAL;
    }
    if (from.file == to.file) return 0;
    if (to.file.node == kNoNode && to.isFolderWanted && !isFolder(from.file)) return ENOTDIR;
    if (to.file.node != kNoNode) {
        if (isFolder(from.file) != isFolder(to.file)) return isFolder(to.file) ? EISDIR : ENOTDIR;
        if (!to.file.inode().names.empty()) return ENOTEMPTY;
    }
    if (from.file.disk != &disk || (to.file.disk != nullptr && to.file.disk != &disk)) return EBUSY;
    if (flags != 0 && !disk.traits.hasRenameFlags) return EINVAL;
    disk.beginStep();
    disk.setName(to.folder.node, to.name, from.file.node, now());
    disk.setName(from.folder.node, from.name, kNoNode, now());
    return 0;
}

int SimulatedTree::remove(const Target& target, bool folder) {
    if (target.name.empty()) return folder ? EINVAL : EISDIR;
    if (target.file.node == kNoNode) return ENOENT;
    if (isFolder(target.file) != folder) return folder ? ENOTDIR : EISDIR;
    if (target.file.disk != target.folder.disk) return EBUSY;
    if (!target.file.inode().names.empty()) return ENOTEMPTY;
    target.folder.disk->beginStep();
    target.folder.disk->setName(target.folder.node, target.name, kNoNode, now());
    return 0;
}

}  // namespace vantrell::test
