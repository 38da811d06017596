// SPDX-License-Identifier: MIT
#include <QAbstractItemView>
#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>

#include "whole/program_harness.h"

namespace vantrell::test {

/// The controls of another window of the program.
class OtherWindow : public Controls {
public:
    explicit OtherWindow(QWidget& window) : window(window) { useWindow(window); }
    using Controls::click;
    using Controls::find;
    void type(const char* field, const std::string& text) const {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        auto* found = find<QLineEdit>(field);
        found->setFocus();
        QTest::keyClicks(found, QString::fromStdString(text));
    }
    QWidget& window;
};

/// Every way that leads from the main window to another one, and what comes of it.
class Windows : public ProgramTest {
protected:
    static QWidget* shown(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->objectName() == QLatin1String(name)) return window;
        return nullptr;
    }
    OtherWindow opened(const char* name) {
        const bool came = waitFor([&] { return shown(name) != nullptr; });
        if (!came) throw std::runtime_error(std::string("no window ") + name);
        return OtherWindow(*shown(name));
    }
    static bool isGone(const char* name) {
        return waitFor([&] { return shown(name) == nullptr; });
    }
    /// With a name, a new folder of that name inside it.
    void chooseFolder(const char* button, const std::string& path, const char* create = nullptr) {
        click(button);
        const OtherWindow picker = opened("frmButton");
        qobject_cast<QFileDialog*>(&picker.window)->setDirectory(QString::fromStdString(path));
        if (create != nullptr) {
            picker.click("Command1");
            picker.type("txtName", create);
            picker.click("cmdNameOk");
        }
        QPushButton* ok = picker.window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
        QTest::mouseClick(ok, Qt::LeftButton);
        EXPECT_TRUE(isGone("frmButton"));
    }
    /// As the active one.
    void addPassword(const std::string& password) {
        trigger("mnuPasswords");
        const OtherWindow editor = opened("frmEDPasswords");
        editor.type("txtpassword", password);
        ASSERT_TRUE(waitFor([&] { return editor.find<QWidget>("cmdAdd")->isVisible(); }));
        QTest::keyClick(editor.find<QWidget>("chkActive"), Qt::Key_Space);
        editor.click("cmdAdd");
        ASSERT_TRUE(waitFor([&] { return program->state().ActivePassword == password; }));
        editor.click("ExitButton");
        EXPECT_TRUE(isGone("frmEDPasswords"));
    }
    std::string currentPassword() {
        trigger("mnuCurrentPass");
        return answer(QMessageBox::Ok);
    }
    void exitProgram() {
        QTimer::singleShot(0, &program->window(), [this] { click("cmdExit"); });
        EXPECT_EQ(QApplication::exec(), 0);
    }
    void backUp() {
        trigger("mnBackup");
        EXPECT_EQ(answer(QMessageBox::Ok), "Current config file is backed up.");
        EXPECT_EQ(answer(QMessageBox::Ok), "Password file is backed up.");
    }
};

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

TEST_F(Windows, RestoreNothingAndSayNothingWithoutABackup) {
    startProgram();
    for (const char* settings : {"mnONLBackup", "mnuNBU"}) trigger(settings);
    for (const char* passwords : {"mnuRPassOn", "mnuPassNormal"}) {
        trigger(passwords);
        EXPECT_EQ(currentPassword(), "secret") << "the only box";
        EXPECT_TRUE(openBoxes().isEmpty());
    }
    EXPECT_FALSE(program->state().UiLoading);
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
        trigger(row.settings);
        EXPECT_EQ(answer(QMessageBox::Ok), "Configruation file has been restored from backup.");
        EXPECT_TRUE(showsText("lblSourcePath", row.source));
        EXPECT_TRUE(showsText("panel1", "ZEP Folder = " + row.source));
        EXPECT_EQ(profile.saved().SourceFolder, row.source);
        trigger(row.passwords);
        EXPECT_EQ(answer(QMessageBox::Ok), "Password file has been restored from backup.");
        EXPECT_TRUE(waitFor([&] { return program->state().ActivePassword == row.password; }));
        EXPECT_EQ(currentPassword(), row.password);
    }
}

TEST_F(Windows, SayThatThereIsNoActivePassword) {
    startProgram();
    OtherProgram(profile.data + "/EDPasswords.mdb").run("UPDATE EncDecPasswords SET Active = 0");
    EXPECT_EQ(currentPassword(), "There is no active password.  Encryption has stopped.");
    EXPECT_TRUE(showsText("Label2", "There is no active password.  Encryption has stopped.."));
    EXPECT_TRUE(isStopped());
    EXPECT_FALSE(program->state().UiLoading);
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

TEST_F(Windows, DeleteOldDoneFilesWhenTold) {
    clock.ahead = std::chrono::days(8);
    writeFile(profile.done + "/old", "bytes");
    startProgram();
    trigger("mnDeleteDone");
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 0; }));
    EXPECT_TRUE(showsText("panel1", "Executing Weekly Delete ...Deleting File: " + profile.done + "/old"));
}

TEST_F(Windows, ShowThePastLog) {
    startProgram();
    click("chkActivateSF");
    pressStart(QMessageBox::Yes);
    ASSERT_TRUE(waitFor([&] { return hasLogged(" ZEP Is PAUSED at "); }));
    trigger("mnuHsitoryDaily");
    const OtherWindow list = opened("frmHistory");
    ASSERT_TRUE(waitFor([&] { return list.find<QWidget>("LoadHistory")->isVisible(); }));
    list.click("LoadHistory");
    const OtherWindow log = opened("frmHistoryInfo");
    EXPECT_EQ(shown("frmHistory"), nullptr);
    const QAbstractItemModel* lines = log.find<QAbstractItemView>("txtScrollingHistory")->model();
    ASSERT_TRUE(waitFor([&] { return lines->rowCount() > 0; }));
    EXPECT_TRUE(lines->index(0, 0).data().toString().endsWith(QStringLiteral(" Loading")));
}

TEST_F(Windows, AllGoAtTheEnd) {
    startProgram();
    for (const char* entry : {"mnuPasswords", "mnuHsitoryDaily", "mnuabout"}) trigger(entry);
    click("cmdSched");
    click("cmdSelectSource1");
    for (const char* name : {"frmEDPasswords", "frmHistory", "frmweeklyDelete", "frmButton"}) opened(name);
    exitProgram();
    for (const QWidget* window : QApplication::topLevelWidgets())
        EXPECT_FALSE(window->isVisible()) << window->objectName().toStdString();
    EXPECT_EQ(profile.saved().SourceFolder, profile.in);
}

}  // namespace vantrell::test
