// SPDX-License-Identifier: MIT
#include "simulation/world.h"

#include <algorithm>

#include "core/data_folder.h"
#include "core/settings_format.h"

namespace vantrell::test {

namespace {

constexpr unsigned kDisks = 3;
constexpr std::array kFolders{"in", "out", "done", "rejected", "profile", "outside"};

// The root of the machine, on which nothing lies but the places of the others.
std::deque<SimulatedDisk> rootAlone() {
    std::deque<SimulatedDisk> disks;
    disks.emplace_back(traitsOf(DiskKind::ext4, 0));
    return disks;
}

// Somewhere in a year.
Clock::TimePoint someTime(Chance& chance) {
    return Clock::TimePoint(std::chrono::seconds(1'790'000'000 + chance.below(31'536'000)));
}

std::string mountPointOf(const std::string& path) { return path.substr(0, path.find('/', 1)); }

}  // namespace

World::World(std::uint64_t seed, const Hazards& hazards)
    : chance(seed), clock(someTime(chance)), disks(rootAlone()), kernel(clock, disks.front(), chance.split()) {
    mountDisks(hazards);
    makeFolders(hazards);
    chooseSettings(hazards);
    writeSettings(hazards);
    for (SimulatedDisk& disk : disks) disk.sync();
    clock.advance(std::chrono::hours(1));
}

DiskTraits World::drawTraits(const Hazards& hazards, unsigned number) {
    constexpr std::array kOrdered{DiskKind::ext4, DiskKind::xfs, DiskKind::btrfs, DiskKind::nfs};
    constexpr std::array kUnordered{DiskKind::ext2, DiskKind::ext4NoJournal, DiskKind::vfat, DiskKind::fuse};
    const bool isUnordered = chance.oneIn(hazards.unordered);
    DiskTraits traits = traitsOf(isUnordered ? chance.pick(kUnordered) : chance.pick(kOrdered), number);
    // Without, the data folder's files could not be made private, and none would be saved.
    traits.hasOwners = true;
    // Without either, no name can be given that replaces nothing, and all files rightly stay where they are.
    if (!traits.hasHardLinks) traits.hasRenameFlags = true;
    if (!chance.oneIn(hazards.oddDisk)) return traits;
    traits.hasNameless = traits.hasNameless && !chance.oneIn(2);
    traits.tellsTypes = !chance.oneIn(3);
    traits.locksFolders = !chance.oneIn(3);
    traits.foldsCase = traits.foldsCase || chance.oneIn(6);
    if (chance.oneIn(4)) traits.timeStep = std::chrono::seconds(1);
    if (traits.hasHardLinks && chance.oneIn(4)) traits.hasRenameFlags = false;
    if (chance.oneIn(6)) traits.leases = Leases::refused;
    return traits;
}

void World::mountDisks(const Hazards& hazards) {
    for (unsigned number = 1; number <= kDisks; ++number) {
        disks.emplace_back(drawTraits(hazards, number));
        const std::string point = "/d" + std::to_string(number);
        others().makeFolder(point);
        // What is written there while the disk is away is written through.
        for (const char* name : kFolders)
            if (chance.oneIn(hazards.vanishing)) others().makeFolder(point + "/" + name);
        kernel.mount(point, disks.back());
    }
}

void World::addRegion(Where where, const std::string& path) {
    others().makeFolder(path);
    const Spot spot = others().at(path);
    std::size_t disk = 0;
    while (&disks[disk] != spot.disk) ++disk;
    regions_.push_back({where, disk, spot.node, path});
}

void World::makeFolders(const Hazards& hazards) {
    const std::uint64_t home = 1 + chance.below(kDisks);
    for (std::size_t i = 0; i < kFolders.size(); ++i) {
        const std::uint64_t disk = chance.oneIn(hazards.otherDisk) ? 1 + chance.below(kDisks) : home;
        folders_[i] = "/d" + std::to_string(disk) + "/" + kFolders[i];
    }
    for (const Where inSource : {Where::done, Where::rejected}) {
        if (chance.oneIn(8))
            folders_[static_cast<std::size_t>(inSource)] =
                folder(Where::source) + (inSource == Where::done ? "/done" : "/rejected");
    }
    for (std::size_t i = 0; i < kFolders.size(); ++i) addRegion(static_cast<Where>(i), folders_[i]);
    for (const Where two : {Where::destination, Where::done, Where::rejected}) addRegion(two, otherFolder(two));
    const std::string& source = folder(Where::source);
    sources_ = {source, source + "/a", source + "/b"};
    if (chance.oneIn(hazards.diskInSource)) {
        disks.emplace_back(drawTraits(hazards, kDisks + 1));
        kernel.mount(source + "/m", disks.back());
        sources_.push_back(source + "/m");
        addRegion(Where::source, sources_.back());
    }
    for (const std::string& path : sources_) others().makeFolder(path);
    profile = folder(Where::data);
    for (const std::string level : {kCompanyName, kProductName, "Bin"})
        others().makeFolder(folders_[static_cast<std::size_t>(Where::data)] += "/" + level);
}

void World::chooseSettings(const Hazards& hazards) {
    settings.SourceFolder = folder(Where::source);
    settings.DestinationFolder = folder(Where::destination);
    settings.DoneFolder = folder(Where::done);
    settings.RejectFolder = folder(Where::rejected);
    settings.IncludeSubfolders = chance.oneIn(hazards.subfolders);
    settings.OverwriteExistingFiles = chance.oneIn(hazards.overwriting);
    settings.RunContinuallyAtStartup = true;
    settings.ScanIntervalMs = 65535;
    settings.WeeklyDeleteDay = static_cast<std::int16_t>(chance.below(8));
    settings.WeeklyDeleteHour = settings.WeeklyDeleteDaysOld = 7;
    settings.WeeklyDeleteAmPm = "PM";
}

void World::writeSettings(const Hazards& hazards) {
    firstSettings = formatSettings(settings);
    // What is lost is at its default then, as it is in `settings`.
    if (chance.oneIn(hazards.tornSettings)) {
        settings.OverwriteExistingFiles = false;
        firstSettings = formatSettings(settings);
        firstSettings.resize(firstSettings.find(",#FALSE#,#FALSE#\r\n"));
    }
    others().makeFile(dataFile(kSettingsFileName), firstSettings);
    others().makeFile(dataFile(kPasswordFileName), "passwords 1");
    // Where a link leads that takes a folder's place.
    for (const char* name : kFileNames) others().makeFile(folder(Where::outside) + "/" + name, "nobody touches this");
}

SimulatedDisk& World::diskOf(Where where) {
    const auto isIt = [where](const Region& region) { return region.where == where; };
    return disks[std::find_if(regions_.begin(), regions_.end(), isIt)->disk];
}

void World::makeRoom() {
    for (SimulatedDisk& disk : disks) disk.traits.capacity = std::uint64_t{1} << 40U;
}

bool World::pullOut(Where where) {
    const std::string point = mountPointOf(folder(where));
    SimulatedDisk* const disk = kernel.mountedAt(point);
    // The disk below Source goes with the one on which it is mounted, and nobody works without the data folder.
    const bool isNeeded = point == mountPointOf(profile) || kernel.mountedAt(folder(Where::source) + "/m") != nullptr;
    if (disk == nullptr || isNeeded) return false;
    kernel.pullOut(point, chance);
    pulledOut_.emplace_back(point, disk);
    return true;
}

void World::plugIn() {
    for (const auto& [point, disk] : pulledOut_) kernel.mount(point, *disk);
    pulledOut_.clear();
}

std::vector<std::string> World::filesBelow(const std::string& folder) {
    std::vector<std::string> found;
    const Spot spot = others().at(folder);
    if (spot.node == kNoNode || !S_ISDIR(spot.inode().mode)) return found;
    for (const auto& [name, node] : spot.inode().names) {
        std::string path = folder + "/" + name;
        const mode_t mode = spot.disk->at(node).mode;
        if (S_ISDIR(mode)) {
            const std::vector<std::string> below = filesBelow(path);
            found.insert(found.end(), below.begin(), below.end());
        } else if (S_ISREG(mode)) {
            found.push_back(std::move(path));
        }
    }
    return found;
}

}  // namespace vantrell::test
