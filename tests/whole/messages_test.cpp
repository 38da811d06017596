// SPDX-License-Identifier: MIT
#include "support/time_zone.h"
#include "whole/windows_harness.h"

namespace vantrell::test {
namespace {

/// Messages that come up by way of several rooms. Those that one room decides are tested there.
class Messages : public Windows {
protected:
    void SetUp() override { writeFile(profile.done + "/old", "bytes"); }

    /// The box that comes up, which is closed.
    void expectBox(const std::string& text) {
        ASSERT_TRUE(waitFor([&] { return !openBoxes().isEmpty(); })) << text;
        const QMessageBox* box = openBoxes().front();
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Vantrell"));
        const auto* words = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        EXPECT_GE(words->width(), words->minimumSizeHint().width()) << "cut off";
        EXPECT_EQ(answer(QMessageBox::Ok), text);
    }
    void expectTheOldFileDeleted() {
        EXPECT_TRUE(showsText("panel1", "Executing Weekly Delete ...Deleting File: " + profile.done + "/old"));
        EXPECT_TRUE(waitFor([&] { return countIn(profile.done) == 0; }));
    }
    void expectRootRefused() {
        EXPECT_TRUE(showsText("Label2", "You can not define a root of any drive!"));
        EXPECT_TRUE(showsText("lblSourcePath", ""));
        EXPECT_EQ(profile.saved().SourceFolder, "");
    }
    void includeSubDirectories() { QTest::keyClick(find<QWidget>("chkActivateSF"), Qt::Key_Space); }

    const TimeZone zone{"UTC"};
};

TEST_F(Messages, ALookupFindsNoPasswordFile) {
    startProgram();
    const std::string file = profile.data + "/EDPasswords.mdb";
    std::filesystem::remove(file);
    trigger("mnuCurrentPass");
    expectBox("Missing Data Base");
    expectBox("There is no active password.  Encryption has stopped.");
    EXPECT_TRUE(showsText("Label2", "There is no active password.  Encryption has stopped.."));
    EXPECT_FALSE(std::filesystem::exists(file)) << "it is never made";
}

TEST_F(Messages, OldOriginalsAreDeletedByHand) {
    clock.ahead = std::chrono::days(8);
    startProgram();
    trigger("mnDeleteDone");
    expectTheOldFileDeleted();
}

TEST_F(Messages, OldOriginalsAreDeletedAtTheScheduledMinute) {
    profile.settings.WeeklyDeleteDay = 1;
    const auto now = std::chrono::floor<std::chrono::seconds>(SystemClock().now());
    auto day = std::chrono::floor<std::chrono::days>(now) + std::chrono::days(9);
    while (std::chrono::weekday(day) != std::chrono::Monday) day += std::chrono::days(1);
    startProgram();
    clock.ahead = day + std::chrono::hours(19) - now;
    EXPECT_TRUE(showsText("lbSched", "Scheduled: Monday 7:0 PM  File Create Date > 7"));
    expectTheOldFileDeleted();
}

TEST_F(Messages, TheRootAndNoFolderAreRefused) {
    startProgram();
    chooseFolder("cmdSelectSource1", "/");
    expectRootRefused();
    chooseFolder("cmdSelectSource1", profile.in);
    click("cmdSelectSource1");
    QTest::keyClick(&opened("frmButton").window, Qt::Key_Escape);
    expectRootRefused();
}

TEST_F(Messages, AChosenFolderIsRefusedOrWarnedOf) {
    profile.settings.OverwriteExistingFiles = true;
    startProgram();
    chooseFolder("cmdSelectSource1", profile.root, "6\" wide");
    expectBox("A folder whose name holds a double quote or a line break cannot be used. The folder stays as it was.");
    EXPECT_TRUE(showsText("lblSourcePath", profile.in));
    chooseFolder("cmdSelectSource2", profile.in);
    expectBox("Destination is the Source folder: the encrypted files stay among those still to be encrypted.");
    chooseFolder("cmdSelectSource2", profile.out);
    includeSubDirectories();
    expectBox(
        "Sub directories are included and existing files are overwritten: files of the same name from different sub "
        "directories replace one another when they come in different passes.");
}

}  // namespace
}  // namespace vantrell::test
