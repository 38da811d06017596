// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <deque>
#include <string>
#include <vector>

#include "core/program_state.h"
#include "simulation/simulated_kernel.h"

namespace vantrell::test {

/// Has room for itself alone: with the ending of an output it is too long for a disk.
inline constexpr std::array<char, 253> kLongName = [] {
    std::array<char, 253> name{};
    std::fill_n(name.begin(), name.size() - 1, 'n');
    return name;
}();
/// Names of files.
inline constexpr std::array kFileNames{"a",     "b",       "A",           "report.pdf",         "Report.pdf",
                                       "x.enc", ".hidden", "\xFF\xFEraw", "e\xCC\x81t\xC3\xA9", kLongName.data()};

/// What may happen in a life; each is one in so many, 0 never.
struct Hazards {
    std::uint64_t unordered = 2;     ///< a disk that does not order its names
    std::uint64_t oddDisk = 3;       ///< one that has no nameless files, coarse times, no leases …
    std::uint64_t otherDisk = 2;     ///< a folder lies on a disk of its own
    std::uint64_t diskInSource = 8;  ///< a disk is mounted below Source
    std::uint64_t subfolders = 2;    ///< they are included
    std::uint64_t overwriting = 2;
    std::uint64_t largeFile = 40;
    std::uint64_t tornSettings = 20;  ///< ZEP.cfg lacks its last items at first
    std::uint64_t faults = 2;         ///< a run in which calls fail
    std::uint64_t shortCalls = 6;     ///< a run with short reads and writes, or with interrupted ones
    std::uint64_t fullDisk = 6;
    std::uint64_t vanishing = 12;      ///< a run in which a disk is pulled out between two passes
    std::uint64_t killsAtNames = 4;    ///< a run that is killed when a certain name has just been given or taken away
    std::uint64_t people = 3;          ///< a life whose operator does more than answer
    std::uint64_t others = 2;          ///< a life with other programs in it
    std::uint64_t betweenCalls = 150;  ///< they act after so many calls, else between turns only
    std::uint64_t clockJumps = 10;     ///< a run before which the clock is set; in one of 50 times as many turns too
};
/// Each by its name.
struct HazardRow {
    const char* name;
    std::uint64_t Hazards::*count;
};
inline constexpr std::array kHazardRows{HazardRow{"unordered", &Hazards::unordered},
                                        HazardRow{"oddDisk", &Hazards::oddDisk},
                                        HazardRow{"otherDisk", &Hazards::otherDisk},
                                        HazardRow{"diskInSource", &Hazards::diskInSource},
                                        HazardRow{"subfolders", &Hazards::subfolders},
                                        HazardRow{"overwriting", &Hazards::overwriting},
                                        HazardRow{"largeFile", &Hazards::largeFile},
                                        HazardRow{"tornSettings", &Hazards::tornSettings},
                                        HazardRow{"faults", &Hazards::faults},
                                        HazardRow{"shortCalls", &Hazards::shortCalls},
                                        HazardRow{"fullDisk", &Hazards::fullDisk},
                                        HazardRow{"vanishing", &Hazards::vanishing},
                                        HazardRow{"killsAtNames", &Hazards::killsAtNames},
                                        HazardRow{"people", &Hazards::people},
                                        HazardRow{"others", &Hazards::others},
                                        HazardRow{"betweenCalls", &Hazards::betweenCalls},
                                        HazardRow{"clockJumps", &Hazards::clockJumps}};

enum class Where : std::uint8_t { source, destination, done, rejected, data, outside, count };
inline constexpr std::size_t kWheres = static_cast<std::size_t>(Where::count);

/// A folder of the world, wherever it is mounted and whatever its path leads to meanwhile.
struct Region {
    Where where = Where::outside;
    std::size_t disk = 0;
    Node node = kNoNode;
    std::string path;
};

/// The disks of a life and what lies on them.
class World {
public:
    World(std::uint64_t seed, const Hazards& hazards);

    /// The folder that is set at the beginning, and the other one that may be chosen instead.
    [[nodiscard]] const std::string& folder(Where where) const { return folders_[static_cast<std::size_t>(where)]; }
    [[nodiscard]] std::string otherFolder(Where where) const { return folder(where) + "-2"; }
    [[nodiscard]] const std::vector<Region>& regions() const { return regions_; }
    /// Source and what lies in it.
    [[nodiscard]] const std::vector<std::string>& sources() const { return sources_; }
    [[nodiscard]] SimulatedDisk& diskOf(Where where);
    [[nodiscard]] OtherPrograms& others() { return kernel.others(); }
    /// The regular files of a folder of the world by their full paths, those in sub-folders too.
    [[nodiscard]] std::vector<std::string> filesBelow(const std::string& folder);
    [[nodiscard]] std::string dataFile(const std::string& name) const { return folder(Where::data) + "/" + name; }
    void makeRoom();
    /// Pulls out the disk of a folder. False when it cannot be.
    bool pullOut(Where where);
    /// Mounts again what was pulled out.
    void plugIn();
    [[nodiscard]] bool isAnyOut() const { return !pulledOut_.empty(); }

    Chance chance;
    SimulatedClock clock;
    SettingsRecord settings;
    std::string firstSettings;  ///< as they stand in ZEP.cfg at the beginning
    std::string profile;
    std::deque<SimulatedDisk> disks;
    SimulatedKernel kernel;

private:
    void mountDisks(const Hazards& hazards);
    void makeFolders(const Hazards& hazards);
    void chooseSettings(const Hazards& hazards);
    void writeSettings(const Hazards& hazards);
    void addRegion(Where where, const std::string& path);
    DiskTraits drawTraits(const Hazards& hazards, unsigned number);

    std::array<std::string, kWheres> folders_;
    std::vector<Region> regions_;
    std::vector<std::string> sources_;
    std::vector<std::pair<std::string, SimulatedDisk*>> pulledOut_;
};

}  // namespace vantrell::test
