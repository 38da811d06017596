// SPDX-License-Identifier: MIT
#include <QGroupBox>
#include <QTreeWidget>

#include "support/time_zone.h"
#include "support/toolbox_fixture.h"
#include "whole/windows_harness.h"

namespace vantrell::test {
namespace {

using Button = QMessageBox::StandardButton;
constexpr Button kOk = QMessageBox::Ok, kYes = QMessageBox::Yes, kNo = QMessageBox::No;

/// A text and where it comes up: the name of its label, or the title of its box and how that is answered.
struct Said {
    const char* where;
    std::string text;  ///< "{root}" is the profile's root folder
    Button answer = kOk;
};

const Said kNoFile{"Vantrell", "Missing Data Base"};
const Said kNoneActive{"Vantrell", "There is no active password.  Encryption has stopped."};
const Said kNoneActiveBelow{"Label2", "There is no active password.  Encryption has stopped.."};
const Said kRootRefused{"Label2", "You can not define a root of any drive!"};

constexpr char kPasswordTitle[] = "Active Password";
constexpr char kSaveInactive[] = "This password is not the active password is this OK?";
constexpr char kDeleteActive[] = "This password is the active password  are you sure you want to delete this password?";
constexpr char kPickerTitle[] = "Tessaly Folder Browser";

class Messages;
using Step = void (*)(Messages&);

struct Situation {
    const char* name;
    Step act;
    std::vector<Said> said;
    Step afterwards = nullptr;
    Step before = nullptr;  ///< on the profile and the clock, before the program starts
};

void PrintTo(const Situation& situation, std::ostream* out) { *out << situation.name; }

/// Each message of the windows, in the situation that brings it up. Those of backup and restore have a table of their
/// own.
class Messages : public Windows, public testing::WithParamInterface<Situation> {
public:
    static std::vector<Situation> ofPasswords();
    static std::vector<Situation> ofWeeklyDelete();
    static std::vector<Situation> ofHistory();
    static std::vector<Situation> ofFolders();

protected:
    void expectSaid(const Said& said) {
        const QString text =
            QString::fromStdString(said.text).replace(QStringLiteral("{root}"), QString::fromStdString(profile.root));
        if (const QLabel* label = labelOf(said.where)) {
            EXPECT_TRUE(waitFor([&] { return label->text() == text; }, 20)) << label->text().toStdString();
            return;
        }
        ASSERT_TRUE(waitFor([&] { return !openBoxes().isEmpty(); }, 20)) << said.text;
        QMessageBox* box = openBoxes().front();
        EXPECT_EQ(box->text().remove(QChar(0x200B)).toStdString(), text.toStdString());
        const auto* words = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        EXPECT_GE(words->width(), words->minimumSizeHint().width()) << "cut off";
        EXPECT_EQ(box->windowTitle().toStdString(), said.where);
        EXPECT_EQ(box->standardButtons(), said.answer == kOk ? kOk : kYes | kNo);
        QTest::mouseClick(box->button(said.answer), Qt::LeftButton);
    }
    QLabel* labelOf(const char* name) {
        QLabel* found = program->window().findChild<QLabel*>(QString::fromLatin1(name));
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (window == &program->window() || !window->isVisible()) continue;
            if (auto* label = window->findChild<QLabel*>(QString::fromLatin1(name))) found = label;
        }
        return found;
    }

    [[nodiscard]] std::string passwordFile() const { return profile.data + "/EDPasswords.mdb"; }
    void sql(const char* statement) const { OtherProgram(passwordFile()).run(statement); }
    std::vector<std::string> passwords() const {
        return OtherProgram(passwordFile()).column("SELECT Password || Active FROM EncDecPasswords");
    }
    OtherWindow editor() {
        trigger("mnuPasswords");
        OtherWindow window = opened("frmEDPasswords");
        EXPECT_TRUE(waitFor([&] {
            return window.find<QWidget>("cmdAdd")->isVisible() ||
                   window.find<QTreeWidget>("ListView1")->topLevelItemCount() > 0;
        }));
        return window;
    }
    /// Types a new password, to be saved as an inactive one.
    OtherWindow typeNew(const char* password) {
        OtherWindow window = editor();
        window.find<QLineEdit>("txtpassword")->insert(QString::fromUtf8(password));
        EXPECT_TRUE(waitFor([&] { return window.find<QWidget>("cmdAdd")->isVisible(); }));
        return window;
    }
    OtherWindow chooseTheOnlyPassword() {
        OtherWindow window = editor();
        auto* list = window.find<QTreeWidget>("ListView1");
        const QRect row = list->visualItemRect(list->topLevelItem(0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, row.center());
        EXPECT_TRUE(waitFor([&] { return window.find<QWidget>("cmdDelete")->isVisible(); }));
        return window;
    }
    /// To a Monday, 7 PM, when what came into Done today may go.
    static std::chrono::seconds untilTheSchedule() {
        const auto now = std::chrono::floor<std::chrono::seconds>(SystemClock().now());
        auto day = std::chrono::floor<std::chrono::days>(now) + std::chrono::days(9);
        while (std::chrono::weekday(day) != std::chrono::Monday) day += std::chrono::days(1);
        return day + std::chrono::hours(19) - now;
    }
    OtherWindow logs() {
        trigger("mnuHsitoryDaily");
        OtherWindow list = opened("frmHistory");
        EXPECT_TRUE(waitFor([&] { return list.find<QWidget>("LoadHistory")->isVisible(); }));
        return list;
    }
    void expectThatTheListStays() {
        EXPECT_NE(shown("frmHistory"), nullptr);
        EXPECT_EQ(shown("frmHistoryInfo"), nullptr);
    }
    /// On the profile's root folder.
    OtherWindow picker() {
        click("cmdSelectSource1");
        OtherWindow window = opened("frmButton");
        window.click("toParentButton");
        return window;
    }
    void includeSubDirectories() { QTest::keyClick(find<QWidget>("chkActivateSF"), Qt::Key_Space); }
    static void press(const OtherWindow& picker, QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(picker.window.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    void create(const std::string& name) {
        const OtherWindow window = picker();
        window.click("Command1");
        window.find<QLineEdit>("txtName")->insert(QString::fromStdString(name));
        window.click("cmdNameOk");
    }
    void expectThatThePickerStays() {
        EXPECT_NE(shown("frmButton"), nullptr);
        expectSaid({"lblStatus", "{root}"});
        EXPECT_EQ(profile.saved().SourceFolder, profile.in);
    }

    std::optional<OtherProgram> other;
    std::optional<OrdinaryUser> user;
    const TimeZone zone{"UTC"};
};

std::vector<Situation> Messages::ofPasswords() {
    const Step unchanged = [](Messages& m) { EXPECT_EQ(m.passwords(), Names{"secret1"}); };
    return {
        {"NothingIsEntered",
         [](Messages& m) {
             m.sql("DELETE FROM EncDecPasswords");
             m.editor().click("cmdAdd");
         },
         {{"Vantrell", "A password must be entered!"}}},
        {"ANewPasswordIsNotToBeActiveNo",
         [](Messages& m) { m.typeNew("new").click("cmdAdd"); },
         {{kPasswordTitle, kSaveInactive, kNo}},
         unchanged},
        {"ANewPasswordIsNotToBeActiveYes",
         [](Messages& m) { m.typeNew("new").click("cmdAdd"); },
         {{kPasswordTitle, kSaveInactive, kYes}},
         [](Messages& m) { EXPECT_TRUE(m.waitFor([&] {
                               return m.passwords() == Names{"secret1", "new0"};
                           })); }},
        {"TheActivePasswordIsNotToBeActiveAnyMore",
         [](Messages& m) {
             const OtherWindow editor = m.chooseTheOnlyPassword();
             QTest::keyClick(editor.find<QWidget>("chkActive"), Qt::Key_Space);
             editor.click("cmdEdit");
         },
         {{kPasswordTitle, kSaveInactive, kYes}},
         [](Messages& m) { EXPECT_TRUE(m.waitFor([&] { return m.passwords() == Names{"secret0"}; })); }},
        {"TheActivePasswordIsDeletedNo",
         [](Messages& m) { m.chooseTheOnlyPassword().click("cmdDelete"); },
         {{kPasswordTitle, kDeleteActive, kNo}},
         unchanged},
        {"TheActiveAndLastPasswordIsDeletedYes",
         [](Messages& m) { m.chooseTheOnlyPassword().click("cmdDelete"); },
         {{kPasswordTitle, kDeleteActive, kYes}, {"Vantrell", "There is not any passwords defined."}},
         [](Messages& m) { EXPECT_EQ(m.passwords(), Names{}); }},
        {"TheEditorFindsNoPasswordFile",
         [](Messages& m) {
             std::filesystem::remove(m.passwordFile());
             m.trigger("mnuPasswords");
         },
         {kNoFile},
         [](Messages& m) { EXPECT_TRUE(m.isGone("frmEDPasswords")); }},
        {"ALookupFindsNoPasswordFile",
         [](Messages& m) {
             std::filesystem::remove(m.passwordFile());
             m.trigger("mnuCurrentPass");
         },
         {kNoFile, kNoneActive, kNoneActiveBelow},
         [](Messages& m) { EXPECT_FALSE(std::filesystem::exists(m.passwordFile())) << "it is never made"; }},
        {"NoPasswordIsActive",
         [](Messages& m) {
             m.sql("UPDATE EncDecPasswords SET Active = 0");
             m.trigger("mnuCurrentPass");
         },
         {kNoneActive, kNoneActiveBelow},
         [](Messages& m) { EXPECT_TRUE(m.isStopped() && !m.program->engine().activePassword.isBeingLookedUp()); }},
        {"ALookupWhileTheEditorIsOpen",
         [](Messages& m) {
             m.editor();
             m.trigger("mnuCurrentPass");
         },
         {{"Vantrell", "secret"}},
         [](Messages& m) { EXPECT_TRUE(m.isGone("frmEDPasswords")); }},
        {"APasswordIsLongerThanTheKey",
         [](Messages& m) {
             const OtherWindow editor = m.typeNew("123456789 123456789 123456789 12");
             EXPECT_EQ(m.labelOf("lblNote")->text(), QString());
             editor.find<QLineEdit>("txtpassword")->insert(QStringLiteral("3"));
         },
         {{"lblNote", "Only the first 32 characters count."}}},
        {"APasswordHoldsCharactersOutsideASCII",
         [](Messages& m) { m.typeNew("sch\u00F6n").click("cmdAdd"); },
         {{"lblNote", "Characters outside ASCII cannot be used."},
          {"Vantrell",
           "The password holds characters outside ASCII (such as accented letters). Files cannot be encrypted with it. "
           "Please choose another one."}},
         unchanged},
        {"TheActivePasswordHoldsCharactersOutsideASCII",
         [](Messages& m) {
             m.sql("UPDATE EncDecPasswords SET Password = 'sch\u00F6n'");
             m.trigger("mnuCurrentPass");
         },
         {{"Vantrell",
           "The active password holds characters outside ASCII (such as accented letters). Files cannot be encrypted "
           "with it, so there is no active password. Please make another password active."},
          kNoneActive,
          kNoneActiveBelow}},
        {"ThePasswordFileIsNone",
         [](Messages& m) {
             writeFile(m.passwordFile(), "This file is longer than nothing, but it is no database at all.");
             m.trigger("mnuPasswords");
         },
         {{"Vantrell",
           "-2147467259  The file {root}/Quillon, Inc/Vantrell/Bin/EDPasswords.mdb is not a database. It was left "
           "as it is."}}},
        {"AnotherProgramHoldsThePasswordFile",
         [](Messages& m) {
             const OtherWindow editor = m.typeNew("new");
             QTest::keyClick(editor.find<QWidget>("chkActive"), Qt::Key_Space);
             m.other.emplace(m.passwordFile());
             m.other->run("BEGIN EXCLUSIVE");
             editor.click("cmdAdd");
         },
         {{"Vantrell",
           "-2147217871  The file {root}/Quillon, Inc/Vantrell/Bin/EDPasswords.mdb is in use by another program: "
           "database is locked."}},
         [](Messages& m) {
             m.other.reset();
             EXPECT_EQ(m.passwords(), Names{"secret1"});
         }},
    };
}

std::vector<Situation> Messages::ofWeeklyDelete() {
    const Step deletesNow = [](Messages& m) { m.trigger("mnDeleteDone"); };
    const Step stays = [](Messages& m) { EXPECT_EQ(countIn(m.profile.done), 1U); };
    const Step gone = [](Messages& m) { EXPECT_TRUE(m.waitFor([&] { return countIn(m.profile.done) == 0; })); };
    const Step onMondays = [](Messages& m) { m.profile.settings.WeeklyDeleteDay = 1; };
    const Said deleting{"panel1", "Executing Weekly Delete ...Deleting File: {root}/done/old"};
    return {
        {"ByHand", deletesNow, {deleting}, gone, [](Messages& m) { m.clock.ahead = std::chrono::days(8); }},
        {"AtTheScheduledMinute",
         [](Messages& m) { m.clock.ahead = untilTheSchedule(); },
         {{"lbSched", "Scheduled: Monday 7:0 PM  File Create Date > 7"}, deleting},
         gone,
         onMondays},
        {"TheClockHasBeenSet",
         [](Messages& m) { m.clock.set = untilTheSchedule(); },
         {{"panel1",
           "Weekly Delete is held back: the computer's clock has been set by more than a day. Please check the date, "
           "then choose \"Manually Delete Done Files\" or start the program again."}},
         [](Messages& m) {
             EXPECT_EQ(countIn(m.profile.done), 1U);
             m.trigger("mnDeleteDone");
             EXPECT_TRUE(m.waitFor([&] { return countIn(m.profile.done) == 0; }));
         },
         onMondays},
        {"TheDaysAreNotSet",
         deletesNow,
         {{"panel1", "Weekly Delete: the days old are not set (7 to 14). Nothing is deleted."}},
         stays,
         [](Messages& m) {
             m.clock.ahead = std::chrono::days(20);
             m.profile.settings.WeeklyDeleteDaysOld = 0;
         }},
        {"DoneIsAnotherFolderToo",
         deletesNow,
         {{"panel1", "Done Folder {root}/done is the Reject Folder too. Weekly Delete deletes nothing."}},
         stays,
         [](Messages& m) {
             m.clock.ahead = std::chrono::days(8);
             m.profile.settings.RejectFolder = m.profile.done;
         }},
        {"AFileCannotBeDeleted",
         [](Messages& m) {
             using std::filesystem::perms;
             const perms mayRead = perms::owner_read | perms::group_read | perms::others_read;
             const perms mayEnter = perms::owner_exec | perms::group_exec | perms::others_exec;
             std::filesystem::permissions(m.profile.root, perms::owner_all | mayEnter);
             std::filesystem::permissions(m.profile.done, mayRead | mayEnter);
             m.user.emplace();
             m.trigger("mnDeleteDone");
         },
         {{"panel1",
           "Weekly Delete could not delete File: {root}/done/old - FAILED: The file cannot be removed: Permission "
           "denied"}},
         [](Messages& m) {
             m.user.reset();
             std::filesystem::permissions(m.profile.done, std::filesystem::perms::owner_all);
             EXPECT_EQ(countIn(m.profile.done), 1U);
         },
         [](Messages& m) { m.clock.ahead = std::chrono::days(8); }},
    };
}

// No box comes up in any of them.
std::vector<Situation> Messages::ofHistory() {
    const Step listStays = [](Messages& m) { m.expectThatTheListStays(); };
    return {
        {"ThereIsNoLogFolder",
         [](Messages& m) {
             std::filesystem::remove_all(m.profile.data + "/Daily Activity Logs");
             m.logs().click("LoadHistory");
         },
         {},
         listStays},
        {"TheLogIsGoneWhenItIsToBeOpened",
         [](Messages& m) {
             writeFile(m.profile.data + "/Daily Activity Logs/last", "line\r\n");
             const OtherWindow list = m.logs();
             std::filesystem::remove(m.profile.data + "/Daily Activity Logs/last");
             list.click("LoadHistory");
         },
         {},
         listStays},
    };
}

std::vector<Situation> Messages::ofFolders() {
    const Step pickerStays = [](Messages& m) { m.expectThatThePickerStays(); };
    const Step sourceIsEmpty = [](Messages& m) { EXPECT_EQ(m.profile.saved().SourceFolder, ""); };
    return {
        {"TheChooserOpens",
         [](Messages& m) { m.picker(); },
         {{"lblTitle", "Select Current Folder or Create New Folder"}, {"lblStatus", "{root}"}},
         pickerStays},
        {"TheRootIsChosen",
         [](Messages& m) { m.chooseFolder("cmdSelectSource1", "/"); },
         {kRootRefused, {"lblSourcePath", ""}},
         sourceIsEmpty},
        {"NothingIsChosen",
         [](Messages& m) { press(m.picker(), QDialogButtonBox::Cancel); },
         {kRootRefused, {"lblSourcePath", ""}},
         sourceIsEmpty},
        {"NothingIsChosenBeforeAPassKnowsThePassword",
         [](Messages& m) {
             m.drop("a");
             m.other.emplace(m.passwordFile());
             m.other->run("BEGIN EXCLUSIVE");
             m.pressStart(kNo);
             EXPECT_TRUE(m.waitFor([&] { return m.program->engine().activePassword.isBeingLookedUp(); }));
             press(m.picker(), QDialogButtonBox::Cancel);
             m.other.reset();
         },
         {kRootRefused},
         [](Messages& m) {
             EXPECT_TRUE(m.isStopped());
             EXPECT_EQ(countIn(m.profile.in), 1U);
         }},
        {"ZepCfgCannotHoldTheFolder",
         [](Messages& m) { m.chooseFolder("cmdSelectSource1", m.profile.root, "6\" wide"); },
         {{"Vantrell",
           "A folder whose name holds a double quote or a line break cannot be used. The folder stays as it was."},
          {"lblSourcePath", "{root}/in"}}},
        {"TheNewFolderIsThereAlready",
         [](Messages& m) { m.create("in"); },
         {{kPickerTitle, "A Folder of that name already exists.\nPlease enter a different name"}},
         pickerStays},
        {"TheNewFoldersNameIsAPath",
         [](Messages& m) { m.create("a/b"); },
         {{kPickerTitle, "The name of a folder cannot hold a \"/\".\nPlease enter a different name"}},
         pickerStays},
        {"TheNewFolderCannotBeMade",
         [](Messages& m) { m.create(std::string(300, 'n')); },
         {{kPickerTitle, "The folder " + std::string(300, 'n') +
                             " could not be created in\n{root}\nPlease enter a different name or select another "
                             "folder"}},
         pickerStays},
        {"TheTypedFolderDoesNotExist",
         [](Messages& m) {
             const OtherWindow window = m.picker();
             auto* field = window.find<QLineEdit>("fileNameEdit");
             field->setText(QStringLiteral("gone"));
             QTest::keyClick(field, Qt::Key_Return);
         },
         {{kPickerTitle, "There is no folder\n{root}/gone"}},
         [](Messages& m) { EXPECT_NE(m.shown("frmButton"), nullptr); }},
        {"TheFolderIsAnotherOneToo",
         [](Messages& m) { m.chooseFolder("cmdSelectSource2", m.profile.in); },
         {{"Vantrell",
           "Destination is the Source folder: the encrypted files stay among those still to be encrypted."}}},
        {"TheFolderLiesInsideSource",
         [](Messages& m) {
             m.includeSubDirectories();
             m.chooseFolder("cmdSelectSource3", m.profile.in, "inside");
         },
         {{"Vantrell",
           "Done lies inside Source, whose sub directories are included: files that are put there to be encrypted are "
           "not found."}}},
        {"EqualNamesMayReplaceOneAnother",
         [](Messages& m) { m.includeSubDirectories(); },
         {{"Vantrell",
           "Sub directories are included and existing files are overwritten: files of the same name from different sub "
           "directories replace one another when they come in different passes."}},
         {},
         [](Messages& m) { m.profile.settings.OverwriteExistingFiles = true; }},
    };
}

TEST_P(Messages, ComeUp) {
    const Situation& situation = GetParam();
    writeFile(profile.done + "/old", "bytes");
    if (situation.before != nullptr) situation.before(*this);
    startProgram();
    situation.act(*this);
    for (const Said& said : situation.said) expectSaid(said);
    if (situation.afterwards != nullptr) situation.afterwards(*this);
    QCoreApplication::processEvents();
    EXPECT_TRUE(openBoxes().isEmpty());
}

TEST_F(Windows, AreWorded) {
    struct {
        const char *window, *title;
        std::vector<const char*> texts;
    } const rows[] = {
        {"frmEDPasswords",
         "Add/Edit Passwords",
         {"    Encryption/Decryption Passwords", "Select Below to Edit", "Enter password here", "Note: Case Sensitive",
          "Active", "Add >>", "Edit >>", "Delete from List <<", "Exit"}},
        {"frmweeklyDelete",
         "Weekly Auto-Delete Scheduler",
         {"Current Date and Time provided by your PC's clock is:", "Day of week you want auto-delete to happen",
          "Time of Day that you want weekly deletions to occur", "Hour", "Minute", "AM", "PM", "Days Old Greater Than",
          "OK", "Cancel"}},
        {"frmHistory", "History", {"Load Selected History", "Exit"}},
        {"frmButton",
         "Select Current Folder or Create New Folder",
         {"Select Current Folder or Create New Folder", "Create", "Create Folder", "Enter a name for your new folder",
          "OK", "Cancel"}}};
    startProgram();
    openAll();
    for (const auto& row : rows) {
        const OtherWindow opened = this->opened(row.window);
        EXPECT_EQ(opened.window.windowTitle().toStdString(), row.title);
        QStringList words;
        for (const auto* label : opened.window.findChildren<QLabel*>()) words.append(label->text());
        for (const auto* box : opened.window.findChildren<QGroupBox*>()) words.append(box->title());
        for (const auto* button : opened.window.findChildren<QAbstractButton*>()) words.append(button->text());
        words.replaceInStrings(QStringLiteral("&"), QString());
        for (const char* text : row.texts) EXPECT_TRUE(words.contains(QLatin1String(text))) << text;
    }
}

std::string nameOf(const testing::TestParamInfo<Situation>& test) { return test.param.name; }

INSTANTIATE_TEST_SUITE_P(Passwords, Messages, testing::ValuesIn(Messages::ofPasswords()), nameOf);
INSTANTIATE_TEST_SUITE_P(WeeklyDelete, Messages, testing::ValuesIn(Messages::ofWeeklyDelete()), nameOf);
INSTANTIATE_TEST_SUITE_P(History, Messages, testing::ValuesIn(Messages::ofHistory()), nameOf);
INSTANTIATE_TEST_SUITE_P(Folders, Messages, testing::ValuesIn(Messages::ofFolders()), nameOf);

}  // namespace
}  // namespace vantrell::test
