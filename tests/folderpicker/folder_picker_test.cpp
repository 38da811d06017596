// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QListView>
#include <QMessageBox>
#include <QTest>
#include <optional>

#include "folderpicker/mk1.h"
#include "platform/files/posix_toolbox.h"
#include "platform/linux/kernel_flush.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_event_loop.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

class FolderPickerTest : public testing::Test {
protected:
    void SetUp() override {
        picker.setParentForm(&owner);
        picker.setShowCreate(true);
        picker.setTitle("Select Current Folder or Create New Folder");
        picker.setInitDir(folder.path());
        owner.resize(700, 500);
        owner.show();
    }
    void pick() {
        ASSERT_TRUE(picker.SaveBrowse(keep()));
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog()));
    }
    MK1::Outcome keep() {
        chosen.reset();
        return [this](const Path& path) { chosen = path; };
    }
    [[nodiscard]] frmButton* dialog() const { return owner.findChild<frmButton*>(); }
    template <class Widget>
    Widget* find(const char* name) {
        return dialog()->findChild<Widget*>(QString::fromLatin1(name));
    }
    QPushButton* button(QDialogButtonBox::StandardButton which) {
        return dialog()->findChild<QDialogButtonBox*>()->button(which);
    }
    void pressOk() { QTest::mouseClick(button(QDialogButtonBox::Open), Qt::LeftButton); }
    void pressCancel() { QTest::mouseClick(button(QDialogButtonBox::Cancel), Qt::LeftButton); }
    bool isGone() {
        return QTest::qWaitFor([this] { return dialog() == nullptr; });
    }
    bool showsStatus(const std::string& path) {
        return QTest::qWaitFor([&] { return find<QLabel>("lblStatus")->text().toStdString() == path; });
    }
    void create(const QString& name) {
        QTest::mouseClick(find<QPushButton>("Command1"), Qt::LeftButton);
        ASSERT_EQ(QApplication::activePopupWidget(), nullptr) << "it would take the first letter of the name";
        ASSERT_TRUE(find<QLineEdit>("txtName")->isVisible() && find<QLineEdit>("txtName")->text().isEmpty());
        QTest::keyClicks(find<QLineEdit>("txtName"), name);
        QTest::mouseClick(find<QPushButton>("cmdNameOk"), Qt::LeftButton);
    }
    /// The box that refuses; it is closed.
    std::string refusal() {
        auto* box = dialog()->findChild<QMessageBox*>();
        if (box == nullptr) return {};
        EXPECT_EQ(box->icon(), QMessageBox::Warning);
        EXPECT_EQ(box->windowTitle(), QStringLiteral("Tessaly Folder Browser"));
        const std::string text = box->text().toStdString();
        QTest::keyClick(box, Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([this] { return dialog()->findChild<QMessageBox*>() == nullptr; }));
        return text;
    }

    TemporaryFolder folder;
    std::unique_ptr<FlushService> flush = makeKernelFlush();
    SystemClock clock;
    QtEventLoop loop{clock, *flush};
    PosixToolbox toolbox{loop, clock};
    QWidget owner;
    MK1 picker{toolbox, &owner};
    std::optional<Path> chosen;
};

TEST_F(FolderPickerTest, GivesBackTheFolderItOpensOnOrNothing) {
    pick();
    EXPECT_EQ(find<QLabel>("lblTitle")->text(), QStringLiteral("Select Current Folder or Create New Folder"));
    EXPECT_EQ(dialog()->windowModality(), Qt::WindowModal) << "the owner is blocked, the event loop is not";
    EXPECT_FALSE(find<QWidget>("Check1")->isVisible() || find<QWidget>("newFolderButton")->isVisible());
    EXPECT_EQ(button(QDialogButtonBox::Open)->text(), QStringLiteral("OK"));
    EXPECT_FALSE(chosen.has_value());
    QTest::keyClick(dialog(), Qt::Key_Escape);
    EXPECT_EQ(chosen, Path());
    EXPECT_FALSE(picker.isPicking());
    picker.setTitle("");
    const std::pair<Path, Path> starts[] = {{folder.path(), folder.path()},
                                            {"", QDir::homePath().toStdString()},
                                            {folder.makeFolder("M\xFCller"), folder.path()},  // Qt cannot name it
                                            {"/", "/"}};
    for (const auto& [wanted, opened] : starts) {
        ASSERT_TRUE(isGone());
        picker.setInitDir(wanted);
        pick();
        EXPECT_EQ(find<QLabel>("lblTitle")->text(), QStringLiteral("Select a Folder"));
        EXPECT_TRUE(showsStatus(opened));
        pressOk();
        EXPECT_EQ(chosen, opened);
    }
}

TEST_F(FolderPickerTest, FollowsTheSelection) {
    folder.makeFolder("a/inner");
    pick();
    auto* field = find<QLineEdit>("fileNameEdit");
    field->setFocus();
    QTest::keyClicks(field, QStringLiteral("a"));
    EXPECT_TRUE(showsStatus(folder / "a"));
    QTest::keyClicks(field, QStringLiteral("b"));
    EXPECT_TRUE(showsStatus(folder / "ab"));
    EXPECT_FALSE(find<QPushButton>("Command1")->isEnabled()) << "nothing can be created in what does not exist";
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(refusal(), "There is no folder\n" + (folder / "ab"));
    EXPECT_FALSE(chosen.has_value());
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_TRUE(find<QPushButton>("Command1")->isEnabled());
    dialog()->setDirectory(QString::fromStdString(folder / "a/inner"));
    field->clear();
    pressOk();
    EXPECT_EQ(chosen, folder / "a/inner");
}

TEST_F(FolderPickerTest, CreatesNothingWithoutANewName) {
    pick();
    for (const char* none : {"", "  "}) {
        create(QString::fromLatin1(none));
        EXPECT_FALSE(find<QWidget>("prompt")->isVisible());
    }
    auto* name = find<QLineEdit>("txtName");
    QTest::mouseClick(find<QPushButton>("Command1"), Qt::LeftButton);
    QTest::keyClicks(name, QStringLiteral("pending"));
    QTest::keyClick(name, Qt::Key_Escape);
    EXPECT_TRUE(dialog()->isVisible()) << "Escape closes the prompt alone";
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    folder.makeFolder("New");
    create(QStringLiteral("New"));
    EXPECT_NE(refusal(), "");
    EXPECT_EQ(name->selectedText(), QStringLiteral("New"));
    QTest::keyClicks(name, QStringLiteral("Newer"));
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_TRUE(showsStatus(folder / "Newer"));
    EXPECT_FALSE(chosen.has_value()) << "the chooser stays open";
}

TEST_F(FolderPickerTest, TheWholeComputerIsItsRootFolder) {
    pick();
    auto* places = find<QListView>("sidebar");
    QTest::mouseClick(places->viewport(), Qt::LeftButton, {},
                      places->visualRect(places->model()->index(0, 0)).center());
    EXPECT_TRUE(showsStatus("/"));
    find<QLineEdit>("fileNameEdit")->setText(QStringLiteral("etc"));
    EXPECT_TRUE(showsStatus("/etc"));
    pressOk();
    EXPECT_EQ(chosen, "/etc");
}

}  // namespace vantrell::test
