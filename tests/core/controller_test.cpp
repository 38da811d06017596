// SPDX-License-Identifier: MIT
#include "core/main_window_controller.h"

#include <gtest/gtest.h>

#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

struct ControllerTest : ::testing::Test {
    PassBench bench;
};

TEST_F(ControllerTest, StartAsksOnceAndOnlyWithFolders) {
    bench.controller.startPressed();
    bench.controller.startPressed();
    bench.settle();
    bench.controller.startPressed();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    bench.boxes.answerOpen(Answer::no);
    bench.settle();

    (void)bench.messages();
    bench.state.settings.DoneFolder.clear();
    bench.controller.startPressed();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    EXPECT_TRUE(bench.messages().empty());
    EXPECT_EQ(bench.window.label2, "One or all of the folder parameters are missing. Please check below.");
}

TEST_F(ControllerTest, TicksDuringAPassDoNothing) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    bench.controller.timRun_Timer();
    bench.settle();
    ASSERT_EQ(bench.boxes.openIds.size(), 1U);
    bench.controller.timRun_Timer();
    bench.settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    (void)bench.controller.folderPressed(FolderKind::done);
    bench.settle();
    EXPECT_EQ(bench.mode.mode(), Mode::stopped);
    EXPECT_TRUE(bench.exists(bench.in("a")));
}

TEST_F(ControllerTest, ChosenFoldersAreTakenRefusedOrEmptied) {
    ASSERT_TRUE(bench.controller.folderPressed(FolderKind::reject));
    bench.controller.folderChosen(FolderKind::reject, "/in");
    EXPECT_EQ(bench.state.settings.RejectFolder, "/in") << "a short path is a folder like any other";
    EXPECT_NE(readFile(bench.state.SettingsFilePath).find("\"/in\""), std::string::npos);
    bench.controller.folderChosen(FolderKind::reject, "/with\"quote");
    EXPECT_EQ(bench.state.settings.RejectFolder, "/in");
    EXPECT_EQ(bench.boxes.informed.size(), 1U);
    for (const char* nothing : {"/", ""}) {
        bench.controller.folderChosen(FolderKind::done, "/srv/done/");
        EXPECT_EQ(bench.state.settings.DoneFolder, "/srv/done");
        bench.controller.folderChosen(FolderKind::done, nothing);
        EXPECT_EQ(bench.state.settings.DoneFolder, "");
        EXPECT_EQ(bench.window.label2, "You can not define a root of any drive!");
    }
    bench.state.WindowLoading = true;
    EXPECT_FALSE(bench.controller.folderPressed(FolderKind::done));
}

}  // namespace
}  // namespace vantrell::test
