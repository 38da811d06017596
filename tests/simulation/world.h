// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <deque>
#include <string>
#include <vector>

#include "core/program_state.h"
#include "simulation/simulated_kernel.h"

namespace vantrell::test {

/// What may happen in a life; each is one in so many, 0 never.
struct Hazards {
    std::uint64_t unordered = 2;  ///< a disk that does not order its names
    std::uint64_t oddDisk = 3;    ///< one that folds names, has coarse times, no second names …
    std::uint64_t subfolders = 2;
    std::uint64_t overwriting = 2;
    std::uint64_t otherDisk = 2;  ///< a folder that lies on a disk of its own
    std::uint64_t faults = 2;     ///< a run in which calls fail
    std::uint64_t others = 2;     ///< a life with other programs in it
    std::uint64_t largeFile = 40;
};

enum class Where { source, destination, done, rejected, data, outside };

/// The disks of a life and what lies on them.
class World {
public:
    World(std::uint64_t seed, const Hazards& hazards);

    [[nodiscard]] const std::string& folder(Where where) const { return folders_[static_cast<std::size_t>(where)]; }
    [[nodiscard]] SimulatedDisk& diskOf(Where where);
    [[nodiscard]] OtherPrograms& others() { return kernel.others(); }
    /// The regular files of a folder of the world by their full paths, those in sub-folders too.
    [[nodiscard]] std::vector<std::string> filesBelow(const std::string& folder) const;
    [[nodiscard]] std::string dataFile(const std::string& name) const { return folder(Where::data) + "/" + name; }
    void makeRoom();

    Chance chance;
    SimulatedClock clock;
    SettingsRecord settings;
    std::string profile;
    std::deque<SimulatedDisk> disks;
    SimulatedKernel kernel;

private:
    void mountDisks(const Hazards& hazards);
    void makeFolders(const Hazards& hazards);
    void writeSettings();
    DiskTraits drawTraits(const Hazards& hazards, unsigned number);

    std::array<std::string, 6> folders_;
};

}  // namespace vantrell::test
