// SPDX-License-Identifier: MIT
#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/chance.h"

namespace vantrell::test {

/// What a file system answers to somebody who asks for a lease.
enum class Leases {
    honest,
    refused,  ///< EINVAL: it has none
    busy,     ///< EAGAIN, whoever has the file open
    lied,     ///< granted, whoever has the file open
};

/// What kind of disk it is. Everything may be changed while it is mounted, as by a disk that fills up.
struct DiskTraits {
    std::string type = "ext4";         ///< as in the mount table
    std::string source = "/dev/sda1";  ///< as in the mount table
    long magic = 0xEF53;               ///< statfs f_type
    dev_t device = 0;
    bool hasJournal = true;  ///< what /sys/fs/ext4/DEVICE/journal_task says; asked of ext4 only
    /// A cut leaves a beginning of the sequence of changed names, a rename being one step. False: each name that was
    /// added or removed since its folder was flushed is there or not on its own, a rename being two.
    bool ordersRenames = true;
    bool losesAllAtCut = false;  ///< it lies in memory
    bool hasNameless = true;     ///< O_TMPFILE
    bool hasRenameFlags = true;
    bool hasHardLinks = true;
    bool hasOwners = true;  ///< false: owner and permissions cannot be changed (EPERM)
    bool hasLocks = true;   ///< false: ENOLCK
    bool locksFolders = true;
    bool hasBirthTimes = true;
    bool tellsTypes = true;  ///< false: DT_UNKNOWN in listings
    bool foldsCase = false;
    bool keepsNumbers = true;            ///< false: other inode numbers after each mount
    bool reusesNumbers = true;           ///< a new file takes the inode number of one that was removed
    bool changeFollowsModified = false;  ///< the time of change is that of the last writing
    std::chrono::nanoseconds timeStep = std::chrono::milliseconds(4);
    std::chrono::nanoseconds clockAhead{0};  ///< of a server, against ours
    std::uint64_t capacity = std::uint64_t{1} << 40U;
    std::size_t longestName = 255;
    Leases leases = Leases::honest;
};

enum class DiskKind { ext4, ext4NoJournal, ext2, xfs, btrfs, tmpfs, vfat, nfs, fuse, count };
/// `number` tells disks of one kind apart: source and device number are made from it.
DiskTraits traitsOf(DiskKind kind, unsigned number);

/// A file's place in its disk's table: it stays the same until the file is gone for good.
using Node = std::uint32_t;
inline constexpr Node kNoNode = ~Node{0};
inline constexpr Node kRootNode = 0;

using Bytes = std::shared_ptr<const std::string>;

struct NameOrder {
    using is_transparent = void;
    bool folds = false;
    bool operator()(std::string_view one, std::string_view other) const;
};
using Names = std::map<std::string, Node, NameOrder>;

class SimulatedDisk;

struct Inode {
    mode_t mode = 0;  ///< 0: nobody's
    unsigned links = 0;
    std::uint64_t number = 0;
    std::chrono::nanoseconds modified{}, changed{}, born{};
    std::shared_ptr<std::string> bytes;      ///< what is read: contents, or where a link leads
    Bytes stable;                            ///< what a cut leaves at least; the same as `bytes` when all is flushed
    std::size_t kept = 0;                    ///< so much of `stable` was not cut off since the last flush
    std::uint64_t written = 0, flushed = 0;  ///< writes so far, and those that are on the disk
    std::uint64_t firstNamed = 0;            ///< the write with which a file that had no name came to have one
    std::size_t lostBegin = 0, lostEnd = 0;  ///< what a failed flush has marked as written, and is not
    Names names;                             ///< of a folder
    Node folder = kNoNode;                   ///< where it was named last, and how
    std::string name;
    bool bornNameless = false;                    ///< may be linked although it has no name
    unsigned pinned = 0, users = 0, writers = 0;  ///< descriptors; all but O_PATH ones; those that may write
    SimulatedDisk* covering = nullptr;            ///< the disk that is mounted on this folder
};

/// One disk: what the running system sees of it, and what is left of that when the power is cut. A copy is a disk of
/// its own with the same state; contents are shared until one of them writes.
class SimulatedDisk {
public:
    explicit SimulatedDisk(DiskTraits traits);

    DiskTraits traits;
    std::uint64_t mountId = 0;  ///< 0 while it is not mounted; kept by the tree

    [[nodiscard]] Inode& at(Node node) { return nodes_[node]; }
    [[nodiscard]] const Inode& at(Node node) const { return nodes_[node]; }
    [[nodiscard]] Node find(Node folder, std::string_view name) const;
    [[nodiscard]] std::uint64_t free() const { return used_ < traits.capacity ? traits.capacity - used_ : 0; }
    [[nodiscard]] std::uint64_t used() const { return used_; }

    // What the running system does. `now` is the wall clock.
    /// A file, folder or link (S_IF… | permissions) without a name.
    Node create(mode_t mode, std::chrono::nanoseconds now);
    /// The changes of names until the next call are one step: all or none on a disk that orders them.
    void beginStep() { ++step_; }
    /// Gives the name to a file, or with kNoNode takes it away. Link counts follow; what has neither name nor user
    /// goes.
    void setName(Node folder, std::string_view name, Node target, std::chrono::nanoseconds now);
    /// How many bytes found room; 0 on a full disk.
    std::size_t write(Node file, std::size_t offset, std::string_view bytes, std::chrono::nanoseconds now);
    void resize(Node file, std::size_t size, std::chrono::nanoseconds now);
    /// `flags`: those of openat.
    void open(Node node, int flags);
    void close(Node node, int flags);
    /// The time as this disk notes it.
    [[nodiscard]] std::chrono::nanoseconds noted(std::chrono::nanoseconds now) const;

    /// What a flush that begins now will bring to the disk when it ends.
    struct Flush {
        Node node = kNoNode;
        bool withNames = false;  ///< fsync; else fdatasync
        Bytes bytes;
        std::uint64_t step = 0;
        std::uint64_t written = 0;
    };
    [[nodiscard]] Flush beginFlush(Node node, bool withNames) const;
    void endFlush(const Flush& flush);
    void flushNow(Node node, bool withNames) { endFlush(beginFlush(node, withNames)); }
    /// The flush fails, and what it was to write counts as written from now on although it never will be.
    void loseFlush(const Flush& flush);
    /// Brings everything to the disk.
    void sync();

    /// The power is cut: one of the states that the disk may then have becomes the state. Nothing is open any more.
    void cut(Chance& chance);
    /// Other inode numbers, where the disk does not keep them.
    void renumber(Chance& chance);

private:
    struct Change {
        Node folder = kNoNode;
        std::string name;
        Node before = kNoNode;
        Node after = kNoNode;
        std::uint64_t step = 0;
        bool isLost = false;
    };

    void put(Node folder, std::string_view name, Node target);
    void dropIfUnused(Node node);
    [[nodiscard]] bool isFlushed(const Change& change, const Flush& flush) const;
    void undoFrom(std::uint64_t step);
    void chooseEachName(Chance& chance);
    void keepReachable();

    std::deque<Inode> nodes_;
    std::vector<Node> unusedNodes_;
    std::vector<std::uint64_t> unusedNumbers_;
    std::uint64_t lastNumber_ = 1;
    std::vector<Change> changes_;  ///< of names, not on the disk yet, in their order
    std::uint64_t step_ = 0;
    std::uint64_t used_ = 0;
};

}  // namespace vantrell::test
