// SPDX-License-Identifier: MIT
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
    ASSERT_TRUE(waitFor([&] { return isIdle(); }));
    expectCarried("first");
    expectCarried("second");
    click("cmdStopDir");
    EXPECT_TRUE(isStopped());
    EXPECT_TRUE(showsText("lblCurNumFilesProcessed", "2"));
    EXPECT_TRUE(hasLogged(" Encryped:  second - Sucessful: \r\n"));
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

}  // namespace vantrell::test
