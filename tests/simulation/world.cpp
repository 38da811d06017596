// SPDX-License-Identifier: MIT
#include "simulation/world.h"

#include "core/data_folder.h"
#include "core/settings_format.h"

namespace vantrell::test {

namespace {

constexpr unsigned kDisks = 3;

std::deque<SimulatedDisk> rootAlone() {
    std::deque<SimulatedDisk> disks;
    disks.emplace_back(traitsOf(DiskKind::ext4, 0));
    return disks;
}

}  // namespace

World::World(std::uint64_t seed, const Hazards& hazards)
    : chance(seed),
      clock(Clock::TimePoint(std::chrono::seconds(1'790'000'000))),
      disks(rootAlone()),
      kernel(clock, disks.front(), chance.split()) {
    mountDisks(hazards);
    makeFolders(hazards);
    writeSettings();
    for (SimulatedDisk& disk : disks) disk.sync();
    clock.advance(std::chrono::hours(1));
}

DiskTraits World::drawTraits(const Hazards& hazards, unsigned number) {
    constexpr std::array kOrdered{DiskKind::ext4, DiskKind::xfs, DiskKind::btrfs, DiskKind::nfs};
    constexpr std::array kUnordered{DiskKind::ext2, DiskKind::ext4NoJournal, DiskKind::vfat, DiskKind::fuse};
    const bool isUnordered = chance.oneIn(hazards.unordered);
    DiskTraits traits = traitsOf(isUnordered ? chance.pick(kUnordered) : chance.pick(kOrdered), number);
    traits.hasOwners = true;  // without, the data folder's files could not be made private, and none would be saved
    // Without either, no name can be given that replaces nothing, and all files rightly stay where they are.
    if (!traits.hasHardLinks) traits.hasRenameFlags = true;
    if (!chance.oneIn(hazards.oddDisk)) return traits;
    traits.hasNameless = traits.hasNameless && !chance.oneIn(2);
    traits.tellsTypes = !chance.oneIn(3);
    traits.locksFolders = !chance.oneIn(3);
    if (chance.oneIn(4)) traits.timeStep = std::chrono::seconds(1);
    if (traits.hasHardLinks && chance.oneIn(4)) traits.hasRenameFlags = false;
    if (chance.oneIn(6)) traits.leases = Leases::refused;
    return traits;
}

void World::mountDisks(const Hazards& hazards) {
    for (unsigned number = 1; number <= kDisks; ++number) {
        disks.emplace_back(drawTraits(hazards, number));
        kernel.mount("/d" + std::to_string(number), disks.back());
    }
}

void World::makeFolders(const Hazards& hazards) {
    constexpr std::array kNames{"in", "out", "done", "rejected", "profile", "outside"};
    const std::uint64_t home = 1 + chance.below(kDisks);
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        const std::uint64_t disk = chance.oneIn(hazards.otherDisk) ? 1 + chance.below(kDisks) : home;
        folders_[i] = "/d" + std::to_string(disk) + "/" + kNames[i];
    }
    if (chance.oneIn(6)) folders_[static_cast<std::size_t>(Where::done)] = folder(Where::source) + "/done";
    for (const std::string& path : folders_) others().makeFolder(path);
    for (const char* name : {"/a", "/b"}) others().makeFolder(folder(Where::source) + name);
    profile = folder(Where::data);
    for (const std::string level : {kCompanyName, kProductName, "Bin"})
        others().makeFolder(folders_[static_cast<std::size_t>(Where::data)] += "/" + level);
    settings.SourceFolder = folder(Where::source);
    settings.DestinationFolder = folder(Where::destination);
    settings.DoneFolder = folder(Where::done);
    settings.RejectFolder = folder(Where::rejected);
    settings.IncludeSubfolders = chance.oneIn(hazards.subfolders);
    settings.OverwriteExistingFiles = chance.oneIn(hazards.overwriting);
    settings.RunContinuallyAtStartup = true;
    settings.ScanIntervalMs = 65535;
    settings.WeeklyDeleteHour = settings.WeeklyDeleteDaysOld = 7;
    settings.WeeklyDeleteAmPm = "PM";
}

void World::writeSettings() {
    others().makeFile(dataFile(kSettingsFileName), formatSettings(settings));
    others().makeFile(dataFile(kPasswordFileName), "the passwords");
    others().makeFile(folder(Where::outside) + "/nobody's", "nobody touches this");
}

SimulatedDisk& World::diskOf(Where where) { return *others().at(folder(where)).disk; }

void World::makeRoom() {
    for (SimulatedDisk& disk : disks) disk.traits.capacity = std::uint64_t{1} << 40U;
}

std::vector<std::string> World::filesBelow(const std::string& folder) const {
    std::vector<std::string> found;
    OtherPrograms& others = const_cast<World*>(this)->kernel.others();
    const Spot spot = others.at(folder);
    if (spot.node == kNoNode || !S_ISDIR(spot.inode().mode)) return found;
    for (const auto& [name, node] : spot.inode().names) {
        const std::string path = folder + "/" + name;
        const mode_t mode = spot.disk->at(node).mode;
        if (S_ISREG(mode)) found.push_back(path);
        if (!S_ISDIR(mode)) continue;
        const std::vector<std::string> below = filesBelow(path);
        found.insert(found.end(), below.begin(), below.end());
    }
    return found;
}

}  // namespace vantrell::test
