// SPDX-License-Identifier: MIT
#include <QFile>
#include <QListView>
#include <QStandardPaths>

#include "whole/windows_harness.h"

namespace vantrell::test {

/// The chooser of the Source folder, which opens on that folder.
class FolderChooser : public Windows {
protected:
    void SetUp() override { startProgram(); }
    OtherWindow open() {
        click("cmdSelectSource1");
        OtherWindow picker = opened("frmButton");
        EXPECT_TRUE(QTest::qWaitForWindowActive(&picker.window));
        return picker;
    }
    static bool showsStatus(const OtherWindow& picker, const std::string& path) {
        return waitFor([&] { return picker.find<QLabel>("lblStatus")->text().toStdString() == path; });
    }
    static void create(const OtherWindow& picker, const char* name) {
        picker.click("Command1");
        ASSERT_EQ(QApplication::activePopupWidget(), nullptr) << "it would take the first letter of the name";
        ASSERT_TRUE(picker.find<QLineEdit>("txtName")->text().isEmpty());
        QTest::keyClicks(picker.find<QLineEdit>("txtName"), QString::fromLatin1(name));
        picker.click("cmdNameOk");
    }
    /// The box that refuses; it is closed.
    static std::string refusal(const OtherWindow& picker) {
        QMessageBox* box = nullptr;
        if (!waitFor([&] { return (box = picker.window.findChild<QMessageBox*>()); }, 10)) return "no box came";
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Tessaly Folder Browser"));
        const std::string text = box->text().toStdString();
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_TRUE(waitFor([&] { return picker.window.findChild<QMessageBox*>() == nullptr; }));
        return text;
    }
};

TEST_F(FolderChooser, FollowsTheSelection) {
    std::filesystem::create_directories(profile.in + "/a/inner");
    const OtherWindow picker = open();
    EXPECT_EQ(picker.window.windowTitle(), QStringLiteral("Choose the Source folder"));
    EXPECT_EQ(picker.window.windowModality(), Qt::WindowModal) << "the main window is blocked, the event loop is not";
    auto* field = picker.find<QLineEdit>("fileNameEdit");
    picker.type("fileNameEdit", "a");
    EXPECT_TRUE(showsStatus(picker, profile.in + "/a"));
    EXPECT_TRUE(picker.find<QWidget>("Command1")->isEnabled());
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr) << "it would hide the buttons, and take the first click";
    QTest::keyClick(field, Qt::Key_Down);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr) << "the suggestions";
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Return}) QTest::keyClick(QApplication::activePopupWidget(), key);
    EXPECT_TRUE(picker.window.isVisible()) << "the key was for the list alone";
    picker.type("fileNameEdit", "b");
    EXPECT_TRUE(showsStatus(picker, profile.in + "/ab"));
    EXPECT_FALSE(picker.find<QWidget>("Command1")->isEnabled()) << "nothing can be created in what does not exist";
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(refusal(picker), "There is no folder\n" + profile.in + "/ab");
    qobject_cast<QFileDialog*>(&picker.window)->setDirectory(QString::fromStdString(profile.in + "/a/inner"));
    field->clear();
    pressOk(picker);
    EXPECT_TRUE(showsText("lblSourcePath", profile.in + "/a/inner"));
    EXPECT_TRUE(isGone("frmButton"));
    const QString settings = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_FALSE(QFile::exists(settings + QStringLiteral("/QtProject.conf"))) << "nobody asked for a history";
}

TEST_F(FolderChooser, ShowsAFolderThatItCannotNameAsItIs) {
    const std::string given = profile.in + "/M\xFCller";
    std::filesystem::create_directory(given);
    profile.settings.SourceFolder = given;
    program.reset();
    writeFile(profile.data + "/ZEP.cfg", formatSettings(profile.settings));
    startOnProfile();
    const OtherWindow unchanged = open();
    EXPECT_TRUE(showsStatus(unchanged, profile.in + "/M\\xFCller"));
    pressOk(unchanged);
    ASSERT_TRUE(isGone("frmButton"));
    EXPECT_EQ(profile.saved().SourceFolder, given) << "nothing else was chosen";
    const OtherWindow picker = open();
    create(picker, "inner");
    EXPECT_TRUE(std::filesystem::is_directory(given + "/inner"));
    EXPECT_TRUE(showsStatus(picker, profile.in + "/M\\xFCller/inner"));
    picker.find<QLineEdit>("fileNameEdit")->setText(QString::fromStdString(profile.in));
    pressOk(picker);
    EXPECT_EQ(profile.saved().SourceFolder, profile.in);
}

TEST_F(FolderChooser, CreatesNothingWithoutANewName) {
    const OtherWindow picker = open();
    create(picker, "");
    EXPECT_FALSE(picker.find<QWidget>("prompt")->isVisible());
    auto* name = picker.find<QLineEdit>("txtName");
    picker.click("Command1");
    QTest::keyClicks(name, QStringLiteral("pending"));
    QTest::keyClick(name, Qt::Key_Escape);
    EXPECT_TRUE(picker.window.isVisible()) << "Escape closes the prompt alone";
    EXPECT_TRUE(std::filesystem::is_empty(profile.in));
    std::filesystem::create_directory(profile.in + "/New");
    create(picker, "New");
    EXPECT_EQ(refusal(picker), "A Folder of that name already exists.\nPlease enter a different name");
    EXPECT_EQ(name->selectedText(), QStringLiteral("New"));
    const QRect place = picker.window.geometry();
    QTest::keyClicks(name, QStringLiteral(" Newer "));
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_TRUE(showsStatus(picker, profile.in + "/ Newer ")) << "as it was typed";
    EXPECT_EQ(picker.window.geometry(), place);
    EXPECT_EQ(profile.saved().SourceFolder, profile.in) << "the chooser stays open";
}

TEST_F(FolderChooser, TakesTheWholeComputerForTheRootFolder) {
    const OtherWindow picker = open();
    auto* places = picker.find<QListView>("sidebar");
    QTest::mouseClick(places->viewport(), Qt::LeftButton, {},
                      places->visualRect(places->model()->index(0, 0)).center());
    EXPECT_TRUE(showsStatus(picker, "/"));
    picker.find<QLineEdit>("fileNameEdit")->setText(QStringLiteral("etc"));
    pressOk(picker);
    EXPECT_TRUE(showsText("lblSourcePath", "/etc"));
}

}  // namespace vantrell::test
