// SPDX-License-Identifier: MIT
#include "core/main_window_controller.h"

#include <gtest/gtest.h>

#include "core/startup.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

using Texts = std::vector<std::string>;

class ControllerTest : public ::testing::Test {
protected:
    void settle() {
        while (bench.loop.turnUntil([] { return false; })) {
        }
    }
    PassBench bench;
};

TEST_F(ControllerTest, StartCarriesContinuouslyOrOnce) {
    writeFile(bench.in("a"), "a");
    bench.boxes.answerNext(Answer::no);
    bench.controller.startPressed();
    settle();
    EXPECT_EQ(bench.messages().front(), "ZEP Is Started at " + bench.time());
    EXPECT_EQ(bench.boxes.asked[0].title, "Running ");
    EXPECT_TRUE(bench.exists(bench.done("a")));
    EXPECT_EQ(bench.mode.mode(), Mode::automatic);

    bench.controller.stopPressed();
    EXPECT_EQ(bench.messages().back(), "ZEP Timer Is STOPPED");
    EXPECT_EQ(bench.window.mode, "Mode: Stopped");
    EXPECT_TRUE(bench.window.startEnabled && !bench.window.stopEnabled);

    writeFile(bench.in("b"), "b");
    bench.boxes.answerNext(Answer::yes);
    bench.controller.startPressed();
    settle();
    EXPECT_TRUE(bench.exists(bench.done("b")));
    EXPECT_EQ(bench.mode.mode(), Mode::stopped);
}

TEST_F(ControllerTest, StartWithoutFoldersOnlySaysSo) {
    bench.state.settings.DoneFolder.clear();
    bench.controller.startPressed();
    settle();
    EXPECT_TRUE(bench.boxes.asked.empty());
    EXPECT_TRUE(bench.messages().empty());
    EXPECT_EQ(bench.window.label2, "One or all of the folder parameters are missing. Please check below.");
}

TEST_F(ControllerTest, StartAsksOnceHoweverOftenItIsPressed) {
    bench.controller.startPressed();
    bench.controller.startPressed();
    settle();
    bench.controller.startPressed();
    settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
}

TEST_F(ControllerTest, TicksDuringAPassDoNothing) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    bench.controller.timRun_Timer();
    settle();
    ASSERT_EQ(bench.boxes.openIds.size(), 1U);
    bench.controller.timRun_Timer();
    settle();
    EXPECT_EQ(bench.boxes.asked.size(), 1U);
    EXPECT_FALSE(bench.controller.folderPressed(FolderKind::done) && bench.state.PassInProgress &&
                 !bench.state.StopRequested)
        << "a folder button asks the pass to stop";
    settle();
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

TEST_F(ControllerTest, TheIntervalFieldShowsWhatCounts) {
    bench.controller.intervalEdited("0");
    EXPECT_EQ(bench.window.minutes, "1");
    EXPECT_EQ(bench.timRun.interval(), 65535);
    bench.controller.intervalSpun(true, "7");
    EXPECT_EQ(bench.window.minutes, "8");
    EXPECT_EQ(bench.state.settings.ScanIntervalMs, 8 * 65535);
    bench.state.UiLoading = true;
    bench.controller.intervalEdited("3");
    bench.controller.includeSubfoldersClicked(true);
    EXPECT_EQ(bench.state.settings.ScanIntervalMs, 8 * 65535);
    EXPECT_FALSE(bench.state.settings.IncludeSubfolders);
}

TEST_F(ControllerTest, TurningLoggingOffIsTheLastSavedLine) {
    bench.boxes.answerNext(Answer::no);
    bench.controller.turnOffLoggingChosen();
    settle();
    EXPECT_FALSE(bench.state.settings.LoggingTurnedOff);
    EXPECT_EQ(bench.boxes.informed[0].text, "Ok then this program will keep logging.");

    bench.boxes.answerNext(Answer::yes);
    bench.controller.turnOffLoggingChosen();
    settle();
    EXPECT_TRUE(bench.state.settings.LoggingTurnedOff && bench.window.shown.LoggingTurnedOff);
    ASSERT_TRUE(bench.runPass());
    const std::string whileOff = readFile(bench.log.LogFilePath());
    EXPECT_NE(whileOff.find("User Turned off Logging\r\n"), std::string::npos);
    EXPECT_EQ(whileOff.find("PAUSED"), std::string::npos);
    bench.controller.turnOffLoggingChosen();
    EXPECT_NE(readFile(bench.log.LogFilePath()).find("PAUSED"), std::string::npos);
}

TEST_F(ControllerTest, TheCloseBoxHidesAProgramThatWorksAndRefusesOneThatIsStopped) {
    bench.window.visible = true;
    bench.controller.closeBoxPressed();
    EXPECT_TRUE(bench.window.visible);
    EXPECT_EQ(bench.boxes.informed.size(), 1U);
    bench.timRun.setEnabled(true);
    bench.controller.closeBoxPressed();
    EXPECT_FALSE(bench.window.visible);
    EXPECT_FALSE(bench.window.closed);
}

TEST_F(ControllerTest, ClosingForGoodAbortsSavesAndQuits) {
    writeFile(bench.in("a"), "a");
    writeFile(bench.out("a.enc"), "old");
    bench.controller.timRun_Timer();
    settle();
    ASSERT_EQ(bench.boxes.openIds.size(), 1U);
    const std::size_t said = bench.window.lines.size();
    bench.controller.closeForGood();
    settle();
    EXPECT_TRUE(bench.hasQuit && bench.window.closed && bench.state.ClosingForGood);
    EXPECT_TRUE(bench.boxes.openIds.empty());
    EXPECT_EQ(bench.window.lines.size(), said) << "nothing further was said";
    EXPECT_EQ(readFile(bench.in("a")), "a");
    EXPECT_TRUE(bench.exists(bench.state.SettingsFilePath));
    EXPECT_EQ(bench.host.started, Texts{"/opt/vantrell/KillZEP"});
}

class StartupTest : public ControllerTest {
protected:
    StartupTest() {
        bench.state = {};
        bench.host.profile = bench.root.makeFolder("profile");
    }
    Startup startup() { return Startup(bench.parts(), {bench.files, lock, bench.controller, timMax, "supplied"}); }
    std::string data(const std::string& name) const {
        return bench.host.profile + "/Quillon, Inc/Vantrell/Bin/" + name;
    }

    FakeInstanceLock lock;
    ManualTimer timMax;
};

TEST_F(StartupTest, AFreshProfileIsSuppliedAndSaysWhatIsMissing) {
    Startup start = startup();
    ASSERT_TRUE(start.load());
    start.timMax_Timer();
    settle();
    EXPECT_EQ(bench.messages(),
              (Texts{"Loading", "One or all of the folders are missing. Please check below.",
                     "One or all of the folder  parameters are missing. Please check below.", "Loaded"}));
    EXPECT_EQ(readFile(data("EDPasswords.mdb")), "supplied");
    EXPECT_EQ(readFile(data("ZEP.cfg")),
              "\"\",#FALSE#,\"\",\"\",#FALSE#,0,0,0,0,\"\",0,#FALSE#,\"\",#FALSE#,#FALSE#\r\n");
    EXPECT_TRUE(bench.window.visible);
    EXPECT_EQ(bench.window.minutes, "1");
    EXPECT_EQ(bench.window.caption, "Quillon Inc - Vantrell(ZEP)");
    EXPECT_FALSE(bench.state.UiLoading || bench.state.WindowLoading || bench.state.StartupPassMarker);
    EXPECT_FALSE(bench.timRun.isEnabled());
    std::filesystem::remove(data("EDPasswords.mdb"));
    Startup again = startup();
    ASSERT_TRUE(again.load());
    EXPECT_FALSE(bench.exists(data("EDPasswords.mdb"))) << "a password file that went missing is not made again";
}

TEST_F(StartupTest, ASecondInstanceStartsItsHelperAndEnds) {
    lock.isFree = false;
    Startup start = startup();
    EXPECT_FALSE(start.load());
    EXPECT_EQ(bench.host.started, Texts{"/opt/vantrell/OpenedMsg"});
    EXPECT_TRUE(bench.window.lines.empty());
    EXPECT_FALSE(bench.exists(data("ZEP.cfg")));
}

TEST_F(StartupTest, RunsByItselfWhenItIsToldTo) {
    std::filesystem::create_directories(data(""));
    const std::string in = bench.root / "in";
    writeFile(data("ZEP.cfg"), "\"" + in + "\",#FALSE#,\"" + (bench.root / "out") + "\",\"" + (bench.root / "done") +
                                   "\",#FALSE#,131070,0,0,0,\"\",0,#TRUE#,\"" + (bench.root / "rejected") +
                                   "\",#FALSE#,#FALSE#\r\n");
    writeFile(in + "/a", "a");
    bench.passwordOfStore = "secret";
    Startup start = startup();
    ASSERT_TRUE(start.load());
    EXPECT_TRUE(bench.timRun.isEnabled());
    EXPECT_EQ(bench.timRun.interval(), 131070);
    start.timMax_Timer();
    EXPECT_FALSE(bench.window.visible) << "it lives out of sight";
    settle();
    EXPECT_EQ(readFile(bench.root / "done/a"), "a");
    EXPECT_EQ(bench.mode.mode(), Mode::automatic);
}

}  // namespace
}  // namespace vantrell::test
