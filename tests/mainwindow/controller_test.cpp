// SPDX-License-Identifier: MIT
#include "mainwindow/main_window_controller.h"

#include <gtest/gtest.h>

#include <optional>

#include "support/file_size_limit.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

struct ControllerTest : ::testing::Test {
    PassBench bench;
};

TEST_F(ControllerTest, TicksDuringAPassDoNothing) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    bench.engine.passes.timRun_Timer();
    bench.settle();
    ASSERT_EQ(bench.boxes.openIds.size(), 1U);
    bench.engine.passes.timRun_Timer();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    (void)bench.engine.fields.folderPressed(FolderKind::done);
    bench.settle();
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
    EXPECT_TRUE(bench.exists(bench.in("a")));
}

TEST_F(ControllerTest, AQuestionThatIsDismissedChangesNothing) {
    writeFile(bench.in("a"), "a");
    bench.boxes.answerNext(Answer::dismissed);
    bench.engine.controller.startPressed();
    bench.settle();
    EXPECT_EQ(bench.engine.mode.mode(), Mode::stopped);
    EXPECT_TRUE(bench.messages().empty());
    writeFile(bench.out("a.enc"), "old");
    bench.boxes.answerNext(Answer::dismissed);
    ASSERT_TRUE(bench.runPass());
    EXPECT_TRUE(bench.exists(bench.in("a")));
    EXPECT_EQ(bench.engine.mode.mode(), Mode::automatic) << "the pass went on";
    bench.boxes.answerNext(Answer::dismissed);
    bench.engine.optionMenus.mnOW();
    bench.boxes.answerNext(Answer::dismissed);
    bench.engine.logMenus.turnOffLoggingChosen();
    bench.settle();
    EXPECT_FALSE(bench.state.settings.OverwriteExistingFiles || bench.state.settings.LoggingTurnedOff);
    EXPECT_TRUE(bench.boxes.asked[2].defaultIsNo && bench.boxes.asked[3].defaultIsNo);
}

TEST_F(ControllerTest, TheClockRestsWhileNobodySeesItAndIsRightWhenTheWindowAppears) {
    HandDrivenTimer& clock = bench.timers["timCurTime"];
    clock.setEnabled(true);
    bench.window.visible = true;
    clock.tickNow();
    EXPECT_EQ(clock.interval(), 25);
    bench.window.visible = false;
    clock.tickNow();
    EXPECT_EQ(clock.interval(), 500);
    bench.window.clock.clear();
    bench.window.visible = true;
    bench.engine.controller.appeared();
    EXPECT_FALSE(bench.window.clock.empty());
    EXPECT_EQ(clock.interval(), 25);
}

TEST_F(ControllerTest, AFolderThatIsTakenBackLiesWhereItLay) {
    const Path done = bench.state.settings.DoneFolder;
    const MountPoint stick{"/media/stick", "vfat"};
    bench.engine.mounts.used({{done, stick}});
    bench.engine.fields.folderChosen(FolderKind::done, "");
    bench.engine.fields.folderChosen(FolderKind::done, "");
    EXPECT_EQ(bench.window.offered[FolderKind::done], done) << "not the empty one that was lost last";
    bench.engine.fields.folderTakenBack(FolderKind::done, done);
    EXPECT_EQ(bench.state.settings.DoneFolder, done);
    EXPECT_FALSE(bench.engine.mounts.isAnother(done, stick)) << "the stick may have gone meanwhile";
    bench.engine.fields.folderChosen(FolderKind::destination, "");
    bench.engine.fields.folderChosen(FolderKind::reject, "");
    bench.engine.fields.folderTakenBack(FolderKind::reject, bench.window.offered[FolderKind::reject]);
    EXPECT_EQ(bench.window.label2, kFolderIsEmpty) << "of the root nothing is to be said any more";
}

TEST_F(ControllerTest, WhatCannotBeSavedIsTakenBackAndToldOnce) {
    ASSERT_TRUE(bench.engine.settings.save());
    const SettingsRecord stored = bench.state.settings;
    const auto changeAll = [this] {
        bench.engine.fields.folderChosen(FolderKind::done, "/elsewhere");
        bench.engine.fields.includeSubfoldersClicked(true);
        bench.engine.fields.intervalEdited("7");
        bench.engine.optionMenus.mnmax();
        bench.boxes.answerNext(Answer::yes);
        bench.engine.logMenus.turnOffLoggingChosen();
        bench.settle();
    };
    for (const std::size_t told : {1U, 2U}) {
        std::optional<FileSizeLimit> full(1);
        changeAll();
        ASSERT_TRUE(bench.runPass());
        changeAll();
        EXPECT_EQ(bench.state.settings, stored);
        EXPECT_EQ(bench.window.shown, stored);
        EXPECT_EQ(bench.window.folders[FolderKind::done], stored.DoneFolder);
        EXPECT_EQ(bench.window.minutes, "1");
        EXPECT_EQ(bench.timRun.interval(), stored.ScanIntervalMs);
        EXPECT_FALSE(bench.window.visible);
        EXPECT_EQ(bench.boxes.informed.size(), told);
        EXPECT_NE(bench.window.warning.find("The activity log could not be saved"), std::string::npos);
        EXPECT_EQ(bench.notifier.shown.back(), "Vantrell: " + bench.window.warning);
        full.reset();
        for (const bool with : {true, false}) bench.engine.fields.includeSubfoldersClicked(with);
    }
    ASSERT_TRUE(bench.runPass());
    EXPECT_EQ(bench.window.warning, "");
    for (const std::string& line : bench.messages()) EXPECT_EQ(line.find("Logging"), std::string::npos) << line;
}

}  // namespace
}  // namespace vantrell::test
