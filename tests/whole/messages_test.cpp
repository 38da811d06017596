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
    bool isOldFileDeleted() {
        return waitFor([&] { return countIn(profile.done) == 0; });
    }
    /// Source is empty, and is offered back; what the settings file holds is another matter.
    void expectEmptied() {
        EXPECT_TRUE(showsText("Label2", "You can not define a root of any drive!"));
        EXPECT_TRUE(showsText("lblSourcePath", ""));
        EXPECT_TRUE(showsText("lblLost1", "Before: " + profile.in));
        EXPECT_TRUE(find<QWidget>("cmdTakeBack1")->isVisible());
        EXPECT_FALSE(find<QWidget>("lblSourcePath")->isVisible() || find<QWidget>("cmdTakeBack2")->isVisible());
    }
    void expectSource(const std::string& folder) {
        EXPECT_TRUE(showsText("lblSourcePath", folder));
        EXPECT_TRUE(showsText("Label2", ""));
        EXPECT_TRUE(showsText("panel1", "ZEP Folder = " + folder));
        EXPECT_EQ(profile.saved().SourceFolder, folder);
        EXPECT_TRUE(find<QWidget>("lblSourcePath")->isVisible());
        EXPECT_FALSE(find<QWidget>("lblLost1")->isVisible() || find<QWidget>("cmdTakeBack1")->isVisible());
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
    EXPECT_TRUE(showsText("panel1", "Executing Weekly Delete ...Deleting File: " + profile.done + "/old"));
    EXPECT_TRUE(isOldFileDeleted());
}

TEST_F(Messages, OldOriginalsAreDeletedAtTheScheduledMinute) {
    profile.settings.WeeklyDeleteDay = 1;
    const auto now = std::chrono::floor<std::chrono::seconds>(SystemClock().now());
    auto day = std::chrono::floor<std::chrono::days>(now) + std::chrono::days(9);
    while (std::chrono::weekday(day) != std::chrono::Monday) day += std::chrono::days(1);
    startProgram();
    clock.ahead = day + std::chrono::hours(19) - now;
    EXPECT_TRUE(showsText("lbSched", "Scheduled: Monday 7:0 PM  File Create Date > 7"));
    EXPECT_TRUE(isOldFileDeleted());
}

TEST_F(Messages, TheRootAndNoFolderAreRefusedAndTheLostFolderIsOfferedBack) {
    startProgram();
    chooseFolder("cmdSelectSource1", "/");
    expectEmptied();
    EXPECT_EQ(profile.saved().SourceFolder, profile.in) << "not at once";
    click("cmdTakeBack1");
    expectSource(profile.in);
    click("cmdSelectSource1");
    QTest::keyClick(&opened("frmButton").window, Qt::Key_Escape);
    expectEmptied();
    includeSubDirectories();
    EXPECT_EQ(profile.saved().SourceFolder, "") << "with the next save";
    click("cmdSelectSource1");
    EXPECT_TRUE(
        waitFor([&] { return opened("frmButton").find<QLabel>("lblStatus")->text().toStdString() == profile.in; }));
    QTest::keyClick(&opened("frmButton").window, Qt::Key_Escape);
    expectEmptied();
    click("cmdTakeBack1");
    expectSource(profile.in);
    click("cmdSelectSource1");
    QTest::keyClick(&opened("frmButton").window, Qt::Key_Escape);
    chooseFolder("cmdSelectSource1", profile.root, "elsewhere");
    expectSource(profile.root + "/elsewhere");
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
