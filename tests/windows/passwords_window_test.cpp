// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QTest>

#include "passwords/frmEDPasswords.h"
#include "passwords/password_editor_controller.h"
#include "passwords/supplied_password_file.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/sqlite/sqlite_database.h"
#include "rig/temporary_folder.h"
#include "support/controls.h"

namespace vantrell::test {
namespace {

/// The editor as the program has it: window, store and file, on Qt's event loop.
class PasswordsWindowTest : public testing::Test, protected Controls {
protected:
    void SetUp() override {
        useWindow(window);
        state.AppFolder = folder.path();
        writeFile(folder / "EDPasswords.mdb", std::string(suppliedPasswordFile()));
        window.setEvents(&controller);
        controller.open();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        ASSERT_TRUE(becomesVisible("cmdAdd"));
    }
    void TearDown() override { window.setEvents(nullptr); }

    bool becomesVisible(const char* name) {
        return QTest::qWaitFor([&] { return find<QWidget>(name)->isVisible(); });
    }
    void alt(Qt::Key key) { QTest::keyClick(&window, key, Qt::AltModifier); }
    /// By keyboard alone; the box is set.
    void add(const char* password) {
        alt(Qt::Key_P);
        QTest::keyClicks(window.focusWidget(), QString::fromLatin1(password));
        ASSERT_TRUE(becomesVisible("cmdAdd"));
        const int before = list()->topLevelItemCount();
        // The operator's own choice comes back with each new text.
        if (!find<QCheckBox>("chkActive")->isChecked()) alt(Qt::Key_T);
        alt(Qt::Key_A);
        ASSERT_TRUE(QTest::qWaitFor([&] { return list()->topLevelItemCount() == before + 1 && text().isEmpty(); }));
        ASSERT_TRUE(QTest::qWaitFor([&] { return state.ActivePassword == password; }));
    }
    frmPasswordList* list() { return find<frmPasswordList>("ListView1"); }
    QString text() { return find<QLineEdit>("txtpassword")->text(); }

    TemporaryFolder folder;
    ProgramState state;
    SystemClock clock;
    QtEventLoop loop{clock};
    frmEDPasswords window;
    QtMessageBoxes boxes{loop.queue(), nullptr};
    SqliteDatabase database{loop};
    PasswordStore store{loop.queue(), database, boxes, state, [](const Path&) { return true; }};
    PasswordEditorController controller{store, window, boxes, state, loop.queue()};
};

TEST_F(PasswordsWindowTest, AddsChoosesAndDeletesByKeyboardAndMouse) {
    add("first");
    EXPECT_EQ(window.focusWidget(), find<QWidget>("txtpassword"));
    EXPECT_EQ(list()->topLevelItem(0)->text(1), QStringLiteral("True"));
    add("second");
    const QRect row = list()->visualItemRect(list()->topLevelItem(1));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, row.center());
    EXPECT_EQ(text(), QStringLiteral("second"));
    ASSERT_TRUE(becomesVisible("cmdDelete"));
    EXPECT_TRUE(find<QCheckBox>("chkActive")->isChecked());
    alt(Qt::Key_S);
    EXPECT_EQ(window.focusWidget(), list());
    QTest::keyClick(list(), Qt::Key_Up);
    EXPECT_EQ(text(), QStringLiteral("first"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return !find<QCheckBox>("chkActive")->isChecked(); }));
    alt(Qt::Key_D);
    ASSERT_TRUE(QTest::qWaitFor([&] { return list()->topLevelItemCount() == 1 && text().isEmpty(); }));
    EXPECT_EQ(list()->topLevelItem(0)->text(0), QStringLiteral("second"));
}

TEST_F(PasswordsWindowTest, AsksAboveItself) {
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QTest::keyClicks(window.focusWidget(), QStringLiteral("new"));
    alt(Qt::Key_A);
    QMessageBox* box = nullptr;
    ASSERT_TRUE(QTest::qWaitFor([&] { return (box = qobject_cast<QMessageBox*>(QApplication::activeWindow())); }));
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(box->isModal());
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.focusWidget() == find<QWidget>("chkActive"); }));
    EXPECT_EQ(text(), QStringLiteral("new"));
}

TEST_F(PasswordsWindowTest, PastedLineBreaksDoNotBecomePartOfAPassword) {
    QApplication::clipboard()->setText(QStringLiteral("se\tcret\r\n"));
    QTest::keyClick(window.focusWidget(), Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(window.enteredPassword(), "secret");
}

}  // namespace
}  // namespace vantrell::test
