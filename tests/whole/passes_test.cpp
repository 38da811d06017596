// SPDX-License-Identifier: MIT
#include <QMenuBar>

#include "whole/program_harness.h"

namespace vantrell::test {

using Passes = ProgramTest;

TEST_F(Passes, GoOnByThemselvesAfterStartAndNo) {
    profile.settings.ScanIntervalMs = 50;
    startProgram();
    ASSERT_TRUE(isStopped());
    EXPECT_EQ(program->window().windowTitle(), QStringLiteral("Done Encrpting Files"));
    drop("first");
    pressStart(QMessageBox::No);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 1; }));
    ASSERT_TRUE(reachesMode("Mode: Auto"));
    EXPECT_FALSE(isEnabled("cmdStartDir"));
    EXPECT_TRUE(isEnabled("cmdStopDir"));
    drop("second");
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 2; })) << "no further pass came";
    expectCarried("first");
    expectCarried("second");
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    click("cmdStopDir");
    EXPECT_TRUE(isStopped());
    EXPECT_TRUE(showsText("lblCurNumFilesProcessed", "2"));
    EXPECT_TRUE(hasLogged(" Encryped:  second - Sucessful: \r\n"));
}

TEST_F(Passes, EndAfterOneWhenThatWasAskedFor) {
    profile.settings.ScanIntervalMs = 50;
    startProgram();
    drop("first");
    pressStart(QMessageBox::Yes);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 1 && isIdle(); }));
    EXPECT_TRUE(isStopped());
    EXPECT_TRUE(waitFor([&] { return textOf("Label2").starts_with("ZEP Is PAUSED at "); }));
    drop("second");
    QTest::qWait(5 * profile.settings.ScanIntervalMs);
    EXPECT_TRUE(std::filesystem::exists(profile.in + "/second")) << "a second pass came";
}

TEST_F(Passes, StopBeforeTheNextFile) {
    startProgram();
    makeSparseFile(profile.in + "/a large one", 512 * kMiB);
    drop("b");
    pressStart(QMessageBox::No);
    ASSERT_TRUE(waitFor([&] { return textOf("lblCurrentProcessingFile") == "a large one"; }));
    EXPECT_TRUE(isEnabled("cmdStopDir"));
    click("cmdStopDir");
    ASSERT_FALSE(isIdle()) << "too late to see anything";
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    EXPECT_TRUE(isStopped());
    expectCarried("a large one");
    EXPECT_TRUE(std::filesystem::exists(profile.in + "/b"));
    EXPECT_TRUE(showsText("Label2", "User Stopped Encrypting Files"));
    EXPECT_TRUE(hasLogged(" User has Stopped Process!D\r\n"));
}

TEST_F(Passes, ObeyTheButtonsDuringALongSearch) {
    constexpr int kFolders = 500;
    constexpr int kFilesEach = 100;
    profile.settings.IncludeSubfolders = true;
    for (int i = 0; i < kFolders; ++i) {
        const std::string below = profile.in + "/" + std::to_string(i);
        std::filesystem::create_directory(below);
        for (int j = 0; j < kFilesEach; ++j) writeFile(below + "/f" + std::to_string(i * kFilesEach + j), "");
    }
    startProgram();
    const auto isSearching = [&] { return program->engine().pass.isSearching(); };
    pressStart(QMessageBox::No);
    ASSERT_TRUE(waitFor(isSearching));
    EXPECT_TRUE(reachesMode("Mode: Running"));
    EXPECT_FALSE(isEnabled("cmdStartDir"));
    click("cmdStartDir");
    EXPECT_TRUE(openBoxes().isEmpty());
    click("cmdStopDir");
    ASSERT_TRUE(isSearching()) << "too late to see anything";
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    EXPECT_TRUE(isStopped());
    EXPECT_EQ(countIn(profile.out), 0U);
    EXPECT_TRUE(showsText("Label2", "User Stopped Encrypting Files"));

    pressStart(QMessageBox::No);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) > 0; })) << "Stop lasted beyond its pass";
    click("cmdStopDir");
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    EXPECT_LT(countIn(profile.done), static_cast<std::size_t>(kFolders * kFilesEach));
}

TEST_F(Passes, CarryAgainOnceAFolderIsBack) {
    startProgram();
    drop("file");
    std::filesystem::rename(profile.done, profile.root + "/elsewhere");
    pressStart(QMessageBox::No);
    ASSERT_TRUE(showsText("Label2", "Source, Destination or Done Folders are missing"));
    EXPECT_TRUE(isStopped());
    EXPECT_EQ(program->window().windowTitle(), QStringLiteral("Problem.... "));
    EXPECT_TRUE(hasLogged(" Done Folder " + profile.done + " does not exist bypassing " + profile.in + " events!\r\n"));
    EXPECT_TRUE(std::filesystem::exists(profile.in + "/file"));
    EXPECT_EQ(countIn(profile.out) + countIn(profile.rejected), 0U);
    std::filesystem::rename(profile.root + "/elsewhere", profile.done);
    pressStart(QMessageBox::No);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 1; }));
    expectCarried("file");
}

/// A pass that waits at the question whether an existing file may be replaced.
class PassAtAQuestion : public ProgramTest {
protected:
    void SetUp() override {
        writeFile(profile.out + "/a.enc", "older");
        drop("a");
        drop("b");
        startProgram();
        pressStart(QMessageBox::No);
        ASSERT_TRUE(waitFor([&] { return openBoxes().size() == 1; }));
        ASSERT_EQ(openBoxes().front()->windowTitle(), QStringLiteral("Overwrite Files"));
    }
    void expectNothingCarried() {
        EXPECT_EQ(readFile(profile.out + "/a.enc"), "older");
        EXPECT_EQ(countIn(profile.out), 1U);
        EXPECT_EQ(countIn(profile.in), 2U);
        EXPECT_EQ(countIn(profile.done) + countIn(profile.rejected), 0U);
    }
};

TEST_F(PassAtAQuestion, HoldsUpThePassAndNotTheWindow) {
    EXPECT_TRUE(reachesMode("Mode: Running"));
    const std::string time = textOf("lblcurTime");
    EXPECT_TRUE(waitFor([&] { return textOf("lblcurTime") != time; })) << "the clock stands still";

    auto* bar = program->window().menuBar();
    auto* view = find<QMenu>("mnview");
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(view->menuAction()).center());
    EXPECT_TRUE(waitFor([&] { return view->isVisible(); }));
    QTest::keyClick(view, Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return !view->isVisible(); }));
    EXPECT_FALSE(isIdle());
    expectNothingCarried();

    EXPECT_NE(answer(QMessageBox::Yes).find("Do you want to overwrite this file?"), std::string::npos);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 2; }));
    EXPECT_EQ(readFile(profile.out + "/a.enc").size(), 16U);
    expectCarried("b");
}

TEST_F(PassAtAQuestion, IsStoppedByWithdrawingIt) {
    click("cmdStopDir");
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    EXPECT_TRUE(openBoxes().isEmpty());
    EXPECT_TRUE(isStopped());
    expectNothingCarried();
    EXPECT_TRUE(showsText("Label2", "User Stopped Encrypting Files"));
}

TEST_F(PassAtAQuestion, IsLeftByExit) {
    QTimer::singleShot(0, &program->window(), [&] { click("cmdExit"); });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_TRUE(openBoxes().isEmpty());
    expectNothingCarried();
    EXPECT_FALSE(hasLogged(" did not encrypt!"));
}

}  // namespace vantrell::test
