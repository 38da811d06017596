// SPDX-License-Identifier: MIT
#include <QComboBox>
#include <QMenuBar>
#include <QSet>
#include <QToolButton>
#include <QTreeWidget>

#include "whole/windows_harness.h"
#include "widgets/elided_label.h"

namespace vantrell::test {

TEST_F(Windows, SetUpANewProfile) {
    std::filesystem::remove_all(profile.root + "/Quillon, Inc");
    std::filesystem::remove(profile.rejected);
    ::setenv("ALLUSERSPROFILE", profile.root.c_str(), 1);
    startOnProfile();
    EXPECT_TRUE(showsText("Label2", "One or all of the folder  parameters are missing. Please check below."));
    chooseFolder("cmdSelectSource1", profile.in);
    chooseFolder("cmdSelectSource2", profile.out);
    chooseFolder("cmdSelectSource3", profile.done);
    click("cmdStartDir");
    EXPECT_TRUE(showsText("Label2", "One or all of the folder parameters are missing. Please check below."));
    chooseFolder("cmdSelectSource4", profile.root, "rejected");
    EXPECT_TRUE(showsText("Label2", ""));
    EXPECT_TRUE(showsText("panel1", "ZEP Folder = " + profile.in));
    pressStart(QMessageBox::No);
    EXPECT_EQ(answer(QMessageBox::Ok), "There is no active password.  Encryption has stopped.");
    addPassword("Seventeen dancing otters");

    writeFile(profile.out + "/b.enc", "older");
    drop("a");
    drop("b");
    pressStart(QMessageBox::No);
    answer(QMessageBox::No);  // b.enc is not to be replaced
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(profile.rejected + "/b"); }));
    expectCarried("a");
    EXPECT_EQ(readFile(profile.out + "/b.enc"), "older");
    const SettingsRecord saved = profile.saved();
    EXPECT_EQ((std::vector{saved.SourceFolder, saved.DestinationFolder, saved.DoneFolder, saved.RejectFolder}),
              (std::vector<Path>{profile.in, profile.out, profile.done, profile.rejected}));
}

TEST_F(Windows, RestoreWhatWasBackedUpByHandAndAtTheEnd) {
    startProgram();
    backUp();
    chooseFolder("cmdSelectSource1", profile.root, "elsewhere");
    addPassword("another");
    exitProgram();
    startOnProfile();
    struct {
        const char *settings, *passwords;
        std::string source, password;
    } const rows[] = {{"mnuNBU", "mnuPassNormal", profile.in, "secret"},
                      {"mnONLBackup", "mnuRPassOn", profile.root + "/elsewhere", "another"}};
    for (const auto& row : rows) {
        click("cmdSelectSource4");
        QTest::keyClick(&opened("frmButton").window, Qt::Key_Escape);
        ASSERT_TRUE(showsText("lblMoveToRejectPath", ""));
        trigger(row.settings);
        EXPECT_EQ(answer(QMessageBox::Ok), "Configruation file has been restored from backup.");
        EXPECT_TRUE(showsText("lblSourcePath", row.source));
        EXPECT_TRUE(showsText("panel1", "ZEP Folder = " + row.source));
        EXPECT_TRUE(showsText("Label2", "")) << "no folder is missing any more";
        EXPECT_EQ(profile.saved().SourceFolder, row.source);
        trigger(row.passwords);
        EXPECT_EQ(answer(QMessageBox::Ok), "Password file has been restored from backup.");
        EXPECT_TRUE(answer(QMessageBox::Ok).starts_with("The passwords that were replaced are kept in the file "));
        EXPECT_TRUE(waitFor([&] { return program->engine().activePassword.known() == row.password; }));
        EXPECT_EQ(currentPassword(), row.password);
    }
}

TEST_F(Windows, ScheduleTheWeeklyDelete) {
    startProgram();
    click("cmdSched");
    const OtherWindow schedule = opened("frmweeklyDelete");
    QTest::keyClicks(schedule.find<QWidget>("lstDay"), QStringLiteral("F"));
    QTest::keyClicks(schedule.find<QWidget>("lstDaysOld"), QStringLiteral("9"));
    EXPECT_TRUE(showsText("lbSched", "")) << "not before OK";
    schedule.click("cmdOK");
    EXPECT_TRUE(isGone("frmweeklyDelete"));
    EXPECT_TRUE(showsText("lbSched", "Scheduled: Friday 7:0 PM  File Create Date > 9"));
    EXPECT_EQ(profile.saved().WeeklyDeleteDay, 5);
    EXPECT_EQ(profile.saved().WeeklyDeleteDaysOld, 9);
    EXPECT_TRUE(reachesMode("Mode: Auto"));
}

TEST_F(Windows, LeaveTheScheduleAsItWas) {
    profile.settings.WeeklyDeleteDaysOld = 6;  // not in its list
    startProgram();
    pressStart(QMessageBox::No);
    const SettingsRecord before = profile.saved();
    const std::function<void(const OtherWindow&)> ways[] = {
        [](const OtherWindow& schedule) { schedule.click("cmdCancel"); },
        [](const OtherWindow& schedule) { QTest::keyClick(&schedule.window, Qt::Key_Escape); },
        [](const OtherWindow& schedule) { schedule.window.close(); },
        [](const OtherWindow& schedule) {
            QTest::keyClick(schedule.find<QWidget>("lstDay"), Qt::Key_Home);
            schedule.click("cmdOK");
        }};
    for (const auto& leave : ways) {
        ASSERT_TRUE(reachesMode("Mode: Auto"));
        click("cmdSched");
        const OtherWindow schedule = opened("frmweeklyDelete");
        EXPECT_TRUE(reachesMode("Mode: Stopped"));
        EXPECT_EQ(schedule.find<QComboBox>("lstDaysOld")->currentText(), QString());
        QTest::keyClicks(schedule.find<QWidget>("lstDay"), QStringLiteral("F"));
        leave(schedule);
        EXPECT_TRUE(isGone("frmweeklyDelete"));
        EXPECT_EQ(profile.saved(), before);
    }
}

TEST_F(Windows, DeleteAPasswordThatWasChosenInTheList) {
    startProgram();
    addPassword("another");
    trigger("mnuPasswords");
    const OtherWindow editor = opened("frmEDPasswords");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&editor.window));
    auto* list = editor.find<QTreeWidget>("ListView1");
    ASSERT_TRUE(waitFor([&] { return list->topLevelItemCount() == 2; }));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->topLevelItem(0)).center());
    EXPECT_EQ(editor.find<QLineEdit>("txtpassword")->text(), QStringLiteral("secret"));
    ASSERT_TRUE(waitFor([&] { return editor.find<QWidget>("cmdDelete")->isVisible(); }));
    EXPECT_FALSE(editor.find<QAbstractButton>("chkActive")->isChecked());
    QTest::keyClick(&editor.window, Qt::Key_D, Qt::AltModifier);
    ASSERT_TRUE(waitFor([&] { return list->topLevelItemCount() == 1; }));
    EXPECT_EQ(list->topLevelItem(0)->text(0), QStringLiteral("another"));
    EXPECT_EQ(list->topLevelItem(0)->text(1), QStringLiteral("True"));
}

TEST_F(Windows, TakeAndShowAWholePasswordByTheKeyboard) {
    startProgram();
    const std::string whole = "0123456789abcdef0123456789abcdef";
    addPassword(whole);
    trigger("mnuPasswords");
    const OtherWindow editor = opened("frmEDPasswords");
    auto* field = editor.find<QLineEdit>("txtpassword");
    EXPECT_TRUE(field->inputMethodHints() & Qt::ImhSensitiveData) << "keyboards on the screen would learn it";
    editor.type("txtpassword", whole);
    EXPECT_EQ(field->text().toStdString(), whole);
    EXPECT_GT(field->width(), field->fontMetrics().horizontalAdvance(field->text())) << "its end is out of sight";
    const auto* edit = editor.find<QPushButton>("cmdEdit");
    ASSERT_TRUE(waitFor([&] { return edit->isVisible(); }));
    int presses = 0;
    const auto counted = QObject::connect(edit, &QPushButton::clicked, edit, [&presses] { ++presses; });
    QTest::keyClick(editor.find<QWidget>("chkActive"), Qt::Key_Return);
    EXPECT_EQ(presses, 1) << "by whoever has come there with the Tab key";
    QObject::disconnect(counted);
    QTest::keyClick(&editor.window, Qt::Key_Escape);
    EXPECT_TRUE(isGone("frmEDPasswords"));
}

TEST_F(Windows, CutNoTextInALargeFont) {
    const QFont usual = QApplication::font();
    QFont twice = usual;
    twice.setPointSizeF(2 * usual.pointSizeF());
    QApplication::setFont(twice);
    startProgram();
    QApplication::setFont(usual);
    openAll();
    forEachControl([](const QWidget& text) {
        const auto* label = qobject_cast<const QLabel*>(&text);
        const bool cutsItself = qobject_cast<const ElidedLabel*>(label) || qobject_cast<const QToolButton*>(&text);
        if (cutsItself || (!label && !qobject_cast<const QAbstractButton*>(&text))) return;
        const QSize needed = label && label->wordWrap() ? text.minimumSizeHint() : text.sizeHint();
        EXPECT_EQ(text.size(), text.size().expandedTo(needed)) << nameOf(text);
    });
}

TEST_F(Windows, GiveEachKeyToOneControl) {
    startProgram();
    openAll();
    std::map<std::pair<const QWidget*, QString>, std::string> keys;
    const auto take = [&](const QWidget& window, const QString& text, const std::string& name) {
        const QString key = QKeySequence::mnemonic(text).toString();
        if (!key.isEmpty())
            EXPECT_TRUE(keys.emplace(std::pair(&window, key), name).second) << name << " has a key twice";
    };
    // Whoever wants to answer a box must not do something else when the main window has the keyboard.
    for (const char* answer : {"&Yes", "&No"}) take(program->window(), QString::fromLatin1(answer), "a box");
    for (const QAction* menu : program->window().menuBar()->actions()) take(program->window(), menu->text(), "a menu");
    forEachControl([&](const QWidget& control) { take(*control.window(), captionOf(control), nameOf(control)); });
}

TEST_F(Windows, AreUsedByKeyboardAlone) {
    startProgram();
    openAll();
    QSet<const QWidget*> reached;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        for (int presses = 0; window->isVisible() && presses < 60; ++presses) {
            QTest::keyClick(window, Qt::Key_Tab);
            reached.insert(window->focusWidget());
        }
    }
    forEachControl([&](const QWidget& control) {
        const bool takesKeys = control.isEnabled() && (control.focusPolicy() & Qt::TabFocus);
        EXPECT_TRUE(!takesKeys || control.focusProxy() || reached.contains(&control)) << nameOf(control);
    });
}

TEST_F(Windows, AllGoAtTheEnd) {
    startProgram();
    openAll();
    exitProgram();
    for (const QWidget* window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
    EXPECT_EQ(profile.saved().SourceFolder, profile.in);
}

}  // namespace vantrell::test
