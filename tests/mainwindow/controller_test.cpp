// SPDX-License-Identifier: MIT
#include "mainwindow/main_window_controller.h"

#include <gtest/gtest.h>

#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

struct ControllerTest : ::testing::Test {
    PassBench bench;
};

TEST_F(ControllerTest, StartAsksOnceAndOnlyWithFolders) {
    bench.engine.controller.startPressed();
    bench.engine.controller.startPressed();
    bench.settle();
    bench.engine.controller.startPressed();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    bench.boxes.answerOpen(Answer::no);
    bench.settle();

    (void)bench.messages();
    bench.state.settings.DoneFolder.clear();
    bench.engine.controller.startPressed();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    EXPECT_TRUE(bench.messages().empty());
    EXPECT_EQ(bench.window.label2, "One or all of the folder parameters are missing. Please check below.");
}

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

}  // namespace
}  // namespace vantrell::test
