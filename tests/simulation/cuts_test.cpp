// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>

#include "simulation/simulated_kernel.h"

namespace vantrell::test {
namespace {

std::string left(OtherPrograms& others, const char* path) {
    const Bytes bytes = others.contents(path);
    return bytes ? *bytes : "-";
}

// Everything that many cuts have left of two files after `act`, as "a b".
template <class Act>
std::set<std::string> leftByCuts(DiskKind kind, Act act) {
    std::set<std::string> all;
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        SimulatedClock clock{Clock::TimePoint(std::chrono::seconds(1'700'000'000))};
        SimulatedDisk disk(traitsOf(kind, 0));
        SimulatedKernel kernel(clock, disk, seed);
        OtherPrograms& others = kernel.others();
        EXPECT_TRUE(others.makeFolder("/d") && others.makeFile("/d/a", "old"));
        disk.sync();
        act(kernel);
        Chance chance(seed);
        kernel.powerCut(chance);
        all.insert(left(others, "/d/a") + " " + left(others, "/d/b"));
    }
    return all;
}

using All = std::set<std::string>;

TEST(SimulatedCut, LeavesOfContentsWhatWasFlushedAndPerhapsMore) {
    const auto append = [](SimulatedKernel& kernel) { kernel.others().append("/d/a", "+1"); };
    EXPECT_EQ(leftByCuts(DiskKind::ext4, append), (All{"old -", "old+ -", "old+1 -", std::string("old\0\0 -", 7)}));
    const auto flushed = [](SimulatedKernel& kernel) {
        kernel.others().append("/d/a", "+1");
        kernel.others().flush("/d/a");
    };
    EXPECT_EQ(leftByCuts(DiskKind::ext2, flushed), (All{"old+1 -"}));
}

TEST(SimulatedCut, LeavesOfARenameOneStepOrTwoChanges) {
    const auto rename = [](SimulatedKernel& kernel) { kernel.others().rename("/d/a", "/d/b"); };
    EXPECT_EQ(leftByCuts(DiskKind::xfs, rename), (All{"old -", "- old"}));
    EXPECT_EQ(leftByCuts(DiskKind::ext2, rename), (All{"old -", "- old", "old old", "- -"}));
    const auto flushed = [](SimulatedKernel& kernel) {
        kernel.others().rename("/d/a", "/d/b");
        kernel.others().flush("/d");
    };
    EXPECT_EQ(leftByCuts(DiskKind::ext4NoJournal, flushed), (All{"- old"}));
}

TEST(SimulatedCut, TakesWhatAFailedFlushHasMarkedAsWritten) {
    const auto lose = [](SimulatedKernel& kernel) {
        const int file = kernel.openat(AT_FDCWD, "/d/a", O_RDWR | O_APPEND, 0);
        const int folder = kernel.openat(AT_FDCWD, "/d", O_RDONLY, 0);
        kernel.others().append("/d/a", "+1");
        kernel.others().rename("/d/a", "/d/b");
        kernel.faults = {{.call = Call::fsync, .error = EIO, .times = 2, .losesData = true}};
        EXPECT_EQ(kernel.fsync(file) + kernel.fsync(folder), 2 * EIO);
        EXPECT_EQ(kernel.fsync(file) + kernel.fsync(folder), 0);
        EXPECT_EQ(left(kernel.others(), "/d/b"), "old+1");
    };
    const std::string zeros("old\0\0 -", 7);
    EXPECT_EQ(leftByCuts(DiskKind::ext4, lose), All{zeros});
    EXPECT_EQ(leftByCuts(DiskKind::ext2, lose), All{zeros});
}

}  // namespace
}  // namespace vantrell::test
