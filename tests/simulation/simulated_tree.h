// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulation/simulated_clock.h"
#include "simulation/simulated_disk.h"

namespace vantrell::test {

/// A file on a disk.
struct Spot {
    SimulatedDisk* disk = nullptr;
    Node node = kNoNode;
    [[nodiscard]] Inode& inode() const { return disk->at(node); }
    bool operator==(const Spot&) const = default;
};

/// Where a path leads: a name in a folder, and what stands there (no node: nothing).
struct Target {
    Spot folder;
    std::string_view name;  ///< into the path, or into the link that led here; "" for a folder that was reached by
                            ///< ".", ".." or "/"
    Spot file;
    bool isFolderWanted = false;  ///< the path ends with a separator
};

/// How a path is followed.
struct Way {
    bool followLast = true;
    bool beneath = false;
    bool noLinks = false;
};

/// The disks of a machine, mounted into one tree. The functions answer 0 or the error number that Linux answers. There
/// are no permissions: planned faults stand for what they forbid.
class SimulatedTree {
public:
    /// The disks belong to whoever mounts them, and outlive the tree.
    SimulatedTree(SimulatedClock& clock, SimulatedDisk& root, std::uint64_t seed);

    /// Makes the folder when it is not there. A disk is mounted at one place at a time.
    void mount(const std::string& point, SimulatedDisk& disk);
    /// At once, also when files on it are open: they stay usable.
    void unmount(const std::string& point);
    /// The disk at a mount point; null when nothing is mounted there.
    [[nodiscard]] SimulatedDisk* mountedAt(const std::string& point) const;
    /// The virtual files below /proc and /sys; empty when there is none of that path.
    [[nodiscard]] std::string virtualText(std::string_view path) const;

    int resolve(Spot start, std::string_view path, Way way, Target& into) const;
    [[nodiscard]] std::string pathOf(Spot spot) const;
    [[nodiscard]] Spot root() const { return {root_, kRootNode}; }
    [[nodiscard]] std::chrono::nanoseconds now() const { return clock_.sinceEpoch(); }

    int makeEntry(const Target& target, mode_t mode, Node& made);
    int link(Spot file, const Target& to);
    int rename(const Target& from, const Target& to, unsigned flags);
    int remove(const Target& target, bool folder);

protected:
    struct Mount {
        std::string point;
        SimulatedDisk* disk = nullptr;
        std::uint64_t id = 0;
        std::uint64_t parent = 0;
        Spot covered;
    };
    /// All disks, as a start of the machine does it.
    void mountAgain();
    [[nodiscard]] const std::vector<Mount>& mounts() const { return mounts_; }

private:
    struct Walk;

    void attach(Mount& mount);
    [[nodiscard]] const Mount* mountOf(const SimulatedDisk* disk) const;
    [[nodiscard]] Spot parentOf(Spot folder) const;

    SimulatedClock& clock_;
    SimulatedDisk* root_;
    Chance chance_;
    std::vector<Mount> mounts_;
    std::uint64_t lastMountId_ = 20;
};

}  // namespace vantrell::test
