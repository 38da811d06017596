// SPDX-License-Identifier: MIT
#include <map>

#include "passwords/supplied_password_file.h"
#include "whole/windows_harness.h"

namespace vantrell::test {
namespace {

using Strings = std::vector<std::string>;

constexpr char kSpoiltSettings[] = "\"/part\",#FALSE#";
constexpr char kSpoiltPasswords[] = "no database, but long enough to be taken for one by its length alone";

const Strings kUnloadSettings{"mnONLBackup"}, kNormalSettings{"mnuNBU"};
const Strings kUnloadPasswords{"mnuRPassOn"}, kNormalPasswords{"mnuPassNormal"};
const Strings kSettings{"mnONLBackup", "mnuNBU"}, kPasswords{"mnuRPassOn", "mnuPassNormal"};
const Strings kRestores{"mnONLBackup", "mnuNBU", "mnuRPassOn", "mnuPassNormal"};
const Strings kBackUp{"mnBackup"};

const Strings kSaved{"Current config file is backed up.", "Password file is backed up."};
const Strings kNotSaved{"Configruation file has NOT been saveed to the backup folder.",
                        "Password file has NOT been saveed to the backup folder."};
const Strings kSettingsNot{"Configruation file has NOT been restored from backup."};
const Strings kPasswordsNot{"Password file has NOT been restored from backup."};

/// What follows when the password file is gone after a restore.
Strings andNoPasswords(Strings texts) {
    texts.insert(texts.end(), {"Missing Data Base", "There is no active password.  Encryption has stopped."});
    return texts;
}

/// What is done to the files of a folder beforehand.
enum Trouble {
    kNone,
    kMissing,
    kSpoilt,
    kNoneActive,
    kNoColumn,
    kCutShort,
    kNoFolder,
    kFileForFolder,
    kSettingsVanish,
    kPasswordsVanish,
    kNoMemoryForSettings,
    kNoMemoryForPasswords
};

struct Situation {
    const char* name;
    Strings menus;
    Trouble live, backup;
    Strings texts;
    bool changesNothing = true;
};

void PrintTo(const Situation& situation, std::ostream* out) { *out << situation.name; }

const Situation kSituations[] = {
    {"BothAreThere", kBackUp, kNone, kNone, kSaved, false},
    {"NothingIsThere",
     kBackUp,
     kMissing,
     kMissing,
     {"Current Config File is NOT backed up.", "Password File is NOT backed up."}},
    {"OnlyOlderCopiesAreThere", kBackUp, kMissing, kNone, kSaved},
    {"LiveFilesAreNotWhatTheyShouldBe", kBackUp, kSpoilt, kNone, kNotSaved},
    {"FileStandsInTheFoldersPlace", kBackUp, kNone, kFileForFolder, kNotSaved},
    {"MemoryRunsOutInABackup", kBackUp, kNoMemoryForSettings, kNone, {"7  Out of memory"}},
    {"NoBackupFolder", kRestores, kNone, kNoFolder, {}},
    {"NoBackupInTheFolder", kRestores, kNone, kMissing, {}},
    {"SettingsAreRestored", kSettings, kNone, kNone, {"Configruation file has been restored from backup."}, false},
    {"UnloadBackupHoldsTooFewSettings", kUnloadSettings, kNone, kSpoilt, kSettingsNot},
    {"NormalBackupHoldsTooFewSettings",
     kNormalSettings,
     kNone,
     kSpoilt,
     {"Configuration file has NOT been restored from backup."}},
    {"RestoredSettingsAreGoneAtOnce", kSettings, kSettingsVanish, kNone, kSettingsNot, false},
    {"MemoryRunsOutWhenSettingsAreRestored",
     kSettings,
     kNone,
     kNoMemoryForSettings,
     {"7  Out of memory   Configruation file has NOT been restored from backup."}},
    {"PasswordsAreRestored", kPasswords, kNone, kNone, {"Password file has been restored from backup."}, false},
    {"RestoredPasswordsHoldNoActiveOne",
     kPasswords,
     kNone,
     kNoneActive,
     {"Password file has been restored from backup.", "There is no active password.  Encryption has stopped."},
     false},
    {"BackupIsNoDatabase", kPasswords, kNone, kSpoilt, kPasswordsNot},
    {"BackupLacksAColumn", kPasswords, kNone, kNoColumn, kPasswordsNot},
    {"BackupIsCutShort", kPasswords, kNone, kCutShort, kPasswordsNot},
    {"RestoredPasswordsAreGoneAtOnce", kPasswords, kPasswordsVanish, kNone, andNoPasswords(kPasswordsNot), false},
    {"MemoryRunsOutInAPasswordRestoreFromTheUnloadBackup", kUnloadPasswords, kNoMemoryForPasswords, kNone,
     andNoPasswords({"7  Out of memory   Password file has NOT been restored from backup."}), false},
    {"MemoryRunsOutInAPasswordRestoreFromTheNormalBackup", kNormalPasswords, kNoMemoryForPasswords, kNone,
     andNoPasswords({"7  Out of memory  Password file has NOT been restored from backup."}), false},
};

/// Each message of backup and restore, in the situation that brings it up, through menus and boxes.
class BackupMessages : public Windows, public testing::WithParamInterface<Situation> {
protected:
    BackupMessages() {
        for (const std::string& backup : backups) {
            std::filesystem::create_directory(backup);
            writeFile(backup + cfg, formatSettings(profile.settings));
            writeFile(backup + mdb, std::string(suppliedPasswordFile()));
            OtherProgram(backup + mdb).run("INSERT INTO EncDecPasswords VALUES ('other', 0), ('older', 1)");
        }
    }

    void arrange(const std::string& inFolder, Trouble trouble) {
        const std::string settings = inFolder + cfg, passwords = inFolder + mdb;
        if (trouble == kMissing || trouble == kSettingsVanish) std::filesystem::remove(settings);
        if (trouble == kMissing || trouble == kPasswordsVanish || trouble == kNoMemoryForPasswords)
            std::filesystem::remove(passwords);
        if (trouble == kSettingsVanish) dataFiles.vanishing.insert(settings);
        if (trouble == kPasswordsVanish) dataFiles.vanishing.insert(passwords);
        if (trouble == kNoMemoryForSettings) dataFiles.outOfMemory.insert(settings);
        if (trouble == kNoMemoryForPasswords) dataFiles.outOfMemory.insert(passwords);
        if (trouble == kSpoilt) writeFile(settings, kSpoiltSettings);
        if (trouble == kSpoilt) writeFile(passwords, kSpoiltPasswords);
        if (trouble == kNoFolder || trouble == kFileForFolder) std::filesystem::remove_all(inFolder);
        if (trouble == kFileForFolder) writeFile(inFolder, "a file");
        if (trouble == kNoneActive) OtherProgram(passwords).run("UPDATE EncDecPasswords SET Active = 0");
        if (trouble == kNoColumn) OtherProgram(passwords).run("ALTER TABLE EncDecPasswords RENAME Active TO Aktiv");
        if (trouble == kCutShort) std::filesystem::resize_file(passwords, std::filesystem::file_size(passwords) / 2);
    }
    [[nodiscard]] std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const std::string& inFolder : {profile.data, backups[0], backups[1]})
            for (const std::string& name : {cfg, mdb})
                if (std::filesystem::exists(inFolder + name)) all[inFolder + name] = readFile(inFolder + name);
        return all;
    }

    const std::string cfg = "/ZEP.cfg", mdb = "/EDPasswords.mdb";
    const std::string backups[2] = {profile.data + "/Config Backup", profile.data + "/Last Config Backup"};
};

TEST_P(BackupMessages, ComeUp) {
    startProgram();
    const Situation& situation = GetParam();
    arrange(profile.data, situation.live);
    for (const std::string& backup : backups) arrange(backup, situation.backup);
    const auto before = contents();
    for (const std::string& menu : situation.menus) {
        trigger(menu.c_str());
        for (const std::string& text : situation.texts) EXPECT_EQ(answer(QMessageBox::Ok), text) << menu;
        if (situation.texts.empty()) EXPECT_EQ(currentPassword(), "secret") << "the only box";
        EXPECT_TRUE(openBoxes().isEmpty()) << menu;
    }
    if (situation.changesNothing) EXPECT_EQ(contents(), before);
}

INSTANTIATE_TEST_SUITE_P(, BackupMessages, testing::ValuesIn(kSituations),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace vantrell::test
