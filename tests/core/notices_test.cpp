// SPDX-License-Identifier: MIT
#include "core/notices.h"

#include <gtest/gtest.h>

#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using std::chrono::hours;
using std::chrono::minutes;

class NoticesTest : public ::testing::Test {
protected:
    std::size_t told() const { return bench.notifier.shown.size(); }
    PassBench bench;
};

TEST_F(NoticesTest, ALastingTroubleIsToldAgainAfterGrowingPauses) {
    std::vector<int> toldAtMinute;
    for (int minute = 0; minute < 72 * 60; ++minute) {
        const std::size_t before = told();
        bench.engine.notices.passEnded(Trouble::diskFails, "the disk is full", 0, Notices::Then::goesOn);
        bench.engine.notices.tick();
        if (told() > before) toldAtMinute.push_back(minute);
        bench.clock.time += minutes(1);
    }
    EXPECT_EQ(toldAtMinute, (std::vector<int>{0, 60, 180, 420, 900, 1860, 3300}));
}

TEST_F(NoticesTest, WhatStandsStillIsToldAgainWithoutAPass) {
    bench.engine.notices.passEnded(Trouble::diskFails, "full", 0, Notices::Then::goesOn);
    bench.engine.notices.passEnded(Trouble::folderGone, "Done Folder /x does not exist", 0, Notices::Then::hasStopped);
    EXPECT_EQ(told(), 2U);
    EXPECT_EQ(bench.notifier.shown.back(), "Vantrell: Done Folder /x does not exist Processing has stopped.");
    bench.clock.time += hours(2);
    bench.engine.notices.tick();
    EXPECT_EQ(told(), 3U);
    bench.clock.time -= hours(30 * 24);
    bench.engine.notices.tick();
    EXPECT_EQ(told(), 4U) << "a clock that was put back silences nothing";
    bench.engine.notices.operatorActed();
    EXPECT_EQ(bench.notifier.withdrawn, 1);
    bench.clock.time += hours(48);
    bench.engine.notices.tick();
    EXPECT_EQ(told(), 4U);
}

TEST_F(NoticesTest, RejectedFilesAreCountedAndNotForgottenByAGoodPass) {
    for (const char* name : {"a", "b"}) {
        std::filesystem::create_directory(bench.out(name + std::string(".enc")));
        writeFile(bench.in(name), name);
    }
    ASSERT_TRUE(bench.runPass());
    ASSERT_EQ(told(), 1U);
    EXPECT_EQ(bench.notifier.shown[0], "Vantrell: 2 files could not be encrypted and are in the rejected folder.");
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.notifier.withdrawn, 0);
    bench.clock.time += hours(5);
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(told(), 1U) << "without news there is nothing to tell again";
    writeFile(bench.in("a"), "a");
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.notifier.shown.back(), "Vantrell: 3 files could not be encrypted and are in the rejected folder.");
}

TEST_F(NoticesTest, AQuestionBringsAHiddenWindowBackAndItsEndWithdraws) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    bench.engine.place.hide();
    TaskGroup group(bench.loop.queue());
    group.start(bench.pass.timRun_Timer());
    bench.settle();
    EXPECT_TRUE(bench.window.visible && !bench.window.minimizedState);
    EXPECT_EQ(told(), 1U);
    bench.clock.time += hours(2);
    bench.engine.notices.tick();
    EXPECT_EQ(told(), 2U) << "it still waits";
    bench.boxes.read = bench.boxes.asked.back().text;
    bench.clock.time += hours(5);
    bench.engine.notices.tick();
    EXPECT_EQ(told(), 2U) << "somebody is looking at it";
    group.abort();
    EXPECT_EQ(bench.notifier.withdrawn, 1);
    bench.engine.place.hide();
    bench.notifier.click();
    EXPECT_TRUE(bench.window.visible);
}

}  // namespace
}  // namespace vantrell::test
