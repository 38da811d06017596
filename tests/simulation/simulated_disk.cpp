// SPDX-License-Identifier: MIT
#include "simulation/simulated_disk.h"

#include <fcntl.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace vantrell::test {

namespace {

char folded(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

std::string& ownBytes(Inode& inode) {
    if (inode.bytes.use_count() != 1) inode.bytes = std::make_shared<std::string>(*inode.bytes);
    return *inode.bytes;
}

// What the disk gets of these bytes when they are flushed: nothing where an earlier flush failed.
Bytes withoutLost(const Inode& inode, const Bytes& bytes) {
    const std::size_t end = std::min(inode.lostEnd, bytes->size());
    if (inode.lostBegin >= end) return bytes;
    return std::make_shared<std::string>(
        std::string(*bytes).replace(inode.lostBegin, end - inode.lostBegin, end - inode.lostBegin, '\0'));
}

std::size_t firstDifference(const std::string& one, const std::string& other) {
    const std::size_t common = std::min(one.size(), other.size());
    const auto end = one.begin() + static_cast<std::ptrdiff_t>(common);
    return static_cast<std::size_t>(std::mismatch(one.begin(), end, other.begin()).first - one.begin());
}

void markFlushed(Inode& inode, Bytes stable) {
    inode.stable = std::move(stable);
    inode.kept = std::min(inode.stable->size(), inode.bytes->size());
}

// What was not flushed is lost, there, there up to some place, or there in size only.
std::string leftByCut(const Inode& inode, Chance& chance) {
    const Bytes written = withoutLost(inode, inode.bytes);
    const std::string& all = *written;
    std::string old = inode.stable->substr(0, inode.kept);
    const std::size_t differs = firstDifference(old, all);
    switch (chance.below(4)) {
        case 0:
            return *inode.stable;
        case 1:
            return all;
        case 2: {
            const std::size_t torn = differs + chance.below(all.size() - differs + 1);
            return all.substr(0, torn) + (torn < old.size() ? old.substr(torn) : "");
        }
        default:
            old.resize(all.size(), '\0');
            return old;
    }
}

}  // namespace

bool NameOrder::operator()(std::string_view one, std::string_view other) const {
    if (!folds) return one < other;
    return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
                                        [](char a, char b) { return folded(a) < folded(b); });
}

DiskTraits traitsOf(DiskKind kind, unsigned number) {
    using enum DiskKind;
    constexpr std::array kTypes{"ext4", "ext4", "ext2", "xfs", "btrfs", "tmpfs", "vfat", "nfs4", "fuse.sshfs"};
    constexpr std::array<long, kTypes.size()> kMagics{0xEF53,     0xEF53, 0xEF53, 0x58465342, 0x9123683E,
                                                      0x01021994, 0x4d44, 0x6969, 0x65735546};
    const auto is = [kind](auto... kinds) { return ((kind == kinds) || ...); };
    const bool isFar = is(nfs, fuse);
    DiskTraits traits;
    traits.type = kTypes[static_cast<std::size_t>(kind)];
    traits.magic = kMagics[static_cast<std::size_t>(kind)];
    traits.source = isFar ? "host:/share" + std::to_string(number) : std::string("/dev/sd_1");
    if (!isFar) traits.source[7] = static_cast<char>('a' + number);
    traits.device = isFar ? makedev(0, 40 + number) : makedev(8, 16 * number + 1);
    traits.hasJournal = !is(ext4NoJournal);
    traits.ordersRenames = !is(ext4NoJournal, ext2, vfat, fuse);
    traits.losesAllAtCut = is(tmpfs);
    traits.hasNameless = !is(vfat, nfs, fuse);
    traits.hasRenameFlags = !isFar;
    traits.hasHardLinks = !is(vfat, fuse);
    traits.hasOwners = !is(vfat);
    traits.locksFolders = !is(nfs);
    traits.hasBirthTimes = !is(ext2, vfat, nfs, fuse);
    traits.foldsCase = is(vfat);
    traits.keepsNumbers = !is(vfat, fuse);
    traits.reusesNumbers = !is(btrfs);
    if (is(ext2, fuse)) traits.timeStep = std::chrono::seconds(1);
    if (is(vfat)) traits.timeStep = std::chrono::seconds(2);
    if (isFar) traits.leases = is(nfs) ? Leases::busy : Leases::lied;
    return traits;
}

SimulatedDisk::SimulatedDisk(DiskTraits described) : traits(std::move(described)) {
    create(S_IFDIR | 0777U, {});
    at(kRootNode).links = 1;
}

Node SimulatedDisk::find(Node folder, std::string_view name) const {
    const Names& names = at(folder).names;
    const auto found = names.find(name);
    return found == names.end() ? kNoNode : found->second;
}

std::chrono::nanoseconds SimulatedDisk::noted(std::chrono::nanoseconds now) const {
    const std::chrono::nanoseconds theirs = now + traits.clockAhead;
    return theirs - theirs % traits.timeStep;
}

Node SimulatedDisk::create(mode_t mode, std::chrono::nanoseconds now) {
    const Node node = unusedNodes_.empty() ? static_cast<Node>(nodes_.size()) : unusedNodes_.back();
    if (unusedNodes_.empty())
        nodes_.emplace_back();
    else
        unusedNodes_.pop_back();
    Inode& inode = at(node);
    inode.mode = mode;
    inode.names = Names(NameOrder{traits.foldsCase});
    inode.bytes = std::make_shared<std::string>();
    inode.stable = inode.bytes;
    inode.modified = inode.changed = inode.born = noted(now);
    inode.number = unusedNumbers_.empty() ? ++lastNumber_ : unusedNumbers_.back();
    if (!unusedNumbers_.empty()) unusedNumbers_.pop_back();
    return node;
}

void SimulatedDisk::put(Node folder, std::string_view name, Node target) {
    Names& names = at(folder).names;
    const auto found = names.find(name);
    if (found == names.end()) {
        if (target != kNoNode) names.emplace(name, target);
    } else if (target == kNoNode) {
        names.erase(found);
    } else {
        found->second = target;
    }
}

void SimulatedDisk::setName(Node folder, std::string_view name, Node target, std::chrono::nanoseconds now) {
    const Node before = find(folder, name);
    changes_.push_back({folder, std::string(name), before, target, step_});
    put(folder, name, target);
    at(folder).modified = at(folder).changed = noted(now);
    if (target != kNoNode) {
        Inode& inode = at(target);
        ++inode.links;
        if (std::exchange(inode.bornNameless, false)) inode.firstNamed = ++inode.written;
        inode.folder = folder;
        inode.name = name;
        if (!traits.changeFollowsModified) inode.changed = noted(now);
    }
    if (before == kNoNode) return;
    --at(before).links;
    if (!traits.changeFollowsModified) at(before).changed = noted(now);
    dropIfUnused(before);
}

// Its bytes are kept: a cut may bring the name back.
void SimulatedDisk::dropIfUnused(Node node) {
    const Inode& inode = at(node);
    if (inode.links != 0 || inode.pinned != 0) return;
    used_ -= inode.bytes->size();
    if (traits.reusesNumbers) unusedNumbers_.push_back(inode.number);
}

std::size_t SimulatedDisk::write(Node file, std::size_t offset, std::string_view bytes, std::chrono::nanoseconds now) {
    Inode& inode = at(file);
    ++inode.written;
    const std::size_t room = inode.bytes->size() + free();
    if (offset >= room) return 0;
    bytes = bytes.substr(0, room - offset);
    const std::size_t end = offset + bytes.size();
    std::string& own = ownBytes(inode);
    if (end > own.size()) {
        used_ += end - own.size();
        own.resize(end);
    }
    bytes.copy(own.data() + offset, bytes.size());
    if (offset <= inode.lostBegin && end >= inode.lostEnd) inode.lostBegin = inode.lostEnd = 0;
    inode.modified = inode.changed = noted(now);
    return bytes.size();
}

void SimulatedDisk::resize(Node file, std::size_t size, std::chrono::nanoseconds now) {
    Inode& inode = at(file);
    ++inode.written;
    std::string& own = ownBytes(inode);
    used_ += size - own.size();
    own.resize(size);
    inode.kept = std::min(inode.kept, size);
    inode.lostEnd = std::min(inode.lostEnd, size);
    inode.modified = inode.changed = noted(now);
}

void SimulatedDisk::open(Node node, int flags) {
    Inode& inode = at(node);
    ++inode.pinned;
    if ((flags & O_PATH) != 0) return;
    ++inode.users;
    if ((flags & O_ACCMODE) != O_RDONLY) ++inode.writers;
}

void SimulatedDisk::close(Node node, int flags) {
    Inode& inode = at(node);
    if (--inode.pinned == 0) dropIfUnused(node);
    if ((flags & O_PATH) != 0) return;
    --inode.users;
    if ((flags & O_ACCMODE) != O_RDONLY) --inode.writers;
}

SimulatedDisk::Flush SimulatedDisk::beginFlush(Node node, bool withNames) const {
    Flush flush{node, withNames || S_ISDIR(at(node).mode), at(node).bytes, 0, at(node).written};
    for (const Change& change : changes_) {
        if (change.folder == node || change.before == node || change.after == node) flush.step = change.step;
    }
    return flush;
}

bool SimulatedDisk::isFlushed(const Change& change, const Flush& flush) const {
    return flush.withNames && change.step <= flush.step && (traits.ordersRenames || change.folder == flush.node);
}

void SimulatedDisk::endFlush(const Flush& flush) {
    Inode& inode = at(flush.node);
    // One that began earlier and ends later takes nothing back.
    if (flush.written >= inode.flushed) markFlushed(inode, withoutLost(inode, flush.bytes));
    inode.flushed = std::max(inode.flushed, flush.written);
    // A later change of the same name that reaches the disk makes up for one that never did.
    for (std::size_t i = 0; i < changes_.size(); ++i) {
        if (changes_[i].isLost || !isFlushed(changes_[i], flush)) continue;
        for (std::size_t before = 0; before < i; ++before) {
            Change& earlier = changes_[before];
            if (earlier.isLost && earlier.folder == changes_[i].folder && earlier.name == changes_[i].name)
                earlier = {earlier.folder, {}, kNoNode, kNoNode, 0};
        }
    }
    std::erase_if(changes_, [&](const Change& change) { return !change.isLost && isFlushed(change, flush); });
}

void SimulatedDisk::loseFlush(const Flush& flush) {
    Inode& inode = at(flush.node);
    const std::size_t differs = firstDifference(inode.stable->substr(0, inode.kept), *flush.bytes);
    if (differs < flush.bytes->size()) {
        inode.lostBegin = inode.lostEnd == 0 ? differs : std::min(inode.lostBegin, differs);
        inode.lostEnd = std::max(inode.lostEnd, flush.bytes->size());
    }
    const auto concerns = [&](const Change& change) {
        return change.folder == flush.node || change.before == flush.node || change.after == flush.node;
    };
    for (Change& change : changes_) change.isLost |= isFlushed(change, flush) && concerns(change);
}

void SimulatedDisk::sync() {
    changes_.clear();
    for (Inode& inode : nodes_) {
        if (inode.mode == 0) continue;
        inode.lostBegin = inode.lostEnd = 0;
        inode.flushed = inode.written;
        markFlushed(inode, inode.bytes);
    }
}

// Also takes back what earlier failed flushes have lost and nothing has written over.
void SimulatedDisk::undoFrom(std::uint64_t step) {
    for (auto change = changes_.rbegin(); change != changes_.rend(); ++change) {
        const bool isLost = change->isLost && find(change->folder, change->name) == change->after;
        if (isLost || change->step >= step) put(change->folder, change->name, change->before);
    }
}

void SimulatedDisk::chooseEachName(Chance& chance) {
    using States = std::map<std::string, std::vector<Node>, NameOrder>;
    std::map<Node, States> folders;
    for (const Change& change : changes_) {
        States& states = folders.try_emplace(change.folder, NameOrder{traits.foldsCase}).first->second;
        std::vector<Node>& nodes = states[change.name];
        if (nodes.empty()) nodes.push_back(change.before);
        if (!change.isLost) nodes.push_back(change.after);
    }
    for (auto& [folder, states] : folders) {
        for (auto& [name, nodes] : states) put(folder, name, chance.pick(nodes));
    }
}

// A folder has one name, and what has none is gone.
void SimulatedDisk::keepReachable() {
    for (Inode& inode : nodes_) inode.links = inode.pinned = inode.users = inode.writers = 0;
    at(kRootNode).links = 1;
    std::vector<Node> folders{kRootNode};
    while (!folders.empty()) {
        const Node folder = folders.back();
        folders.pop_back();
        std::erase_if(at(folder).names, [&](const auto& entry) {
            Inode& inode = at(entry.second);
            if (S_ISDIR(inode.mode) && inode.links != 0) return true;
            // Whoever checks the disk takes a file for unused that has no name by its own count.
            if (!traits.ordersRenames && inode.flushed < inode.firstNamed) return true;
            ++inode.links;
            inode.folder = folder;
            inode.name = entry.first;
            if (S_ISDIR(inode.mode)) folders.push_back(entry.second);
            return false;
        });
    }
    for (Node node = 0; node < nodes_.size(); ++node) {
        if (at(node).mode == 0 || at(node).links != 0) continue;
        at(node) = Inode();
        unusedNodes_.push_back(node);
    }
}

void SimulatedDisk::cut(Chance& chance) {
    const std::size_t survivors = chance.below(changes_.size() + 1);
    if (traits.losesAllAtCut)
        at(kRootNode).names.clear();
    else if (traits.ordersRenames)
        undoFrom(survivors < changes_.size() ? changes_[survivors].step : step_ + 1);
    else
        chooseEachName(chance);
    changes_.clear();
    keepReachable();
    used_ = 0;
    unusedNumbers_.clear();
    std::set<std::uint64_t> numbers;
    for (Inode& inode : nodes_) {
        if (inode.mode == 0) continue;
        inode.covering = nullptr;
        if (inode.bytes != inode.stable) inode.bytes = std::make_shared<std::string>(leftByCut(inode, chance));
        inode.lostBegin = inode.lostEnd = 0;
        inode.firstNamed = 0;
        markFlushed(inode, inode.bytes);
        used_ += inode.bytes->size();
        // The number of a file that came back may be another one's by now.
        if (!numbers.insert(inode.number).second) inode.number = ++lastNumber_;
    }
}

void SimulatedDisk::renumber(Chance& chance) {
    if (traits.keepsNumbers) return;
    lastNumber_ += chance.below(1000);
    unusedNumbers_.clear();
    for (Inode& inode : nodes_) inode.number = ++lastNumber_;
}

}  // namespace vantrell::test
