// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <optional>

#include "housekeeping/backup_fixture.h"

namespace vantrell::test {
namespace {

constexpr char kIncomplete[] = "\"/part\",#FALSE#";
constexpr char kNoDatabase[] = "no database, but long enough to be taken for one by its length alone";

enum Operation { kBackUp, kCloseConfig, kHandConfig, kClosePassword, kHandPassword };
using Operations = std::vector<Operation>;
const Operations kConfigs{kCloseConfig, kHandConfig};
const Operations kPasswords{kClosePassword, kHandPassword};
const Operations kRestores{kCloseConfig, kHandConfig, kClosePassword, kHandPassword};

const Strings kSaved{"Current config file is backed up.", "Password file is backed up."};
const Strings kNotThere{"Current Config File is NOT backed up.", "Password File is NOT backed up."};
const Strings kNotSaved{"Configruation file has NOT been saveed to the backup folder.",
                        "Password file has NOT been saveed to the backup folder."};
const Strings kConfigRestored{"Configruation file has been restored from backup."};
const Strings kConfigNot{"Configruation file has NOT been restored from backup."};
const Strings kHandConfigNot{"Configuration file has NOT been restored from backup."};
const Strings kConfigError{"7  Out of memory   Configruation file has NOT been restored from backup."};
const Strings kRestored{"Password file has been restored from backup."};
const Strings kNotRestored{"Password file has NOT been restored from backup."};
const Strings kCloseError{"7  Out of memory   Password file has NOT been restored from backup."};
const Strings kHandError{"7  Out of memory  Password file has NOT been restored from backup."};

/// What an arrangement works on: the data folder, the backup folder of the operation that follows, and the files.
struct Scene {
    std::string app;
    std::string backup;
    TroubledFiles& files;
};

void removeBoth(const std::string& folder) {
    for (const char* name : {"/ZEP.cfg", "/EDPasswords.mdb"}) std::filesystem::remove(folder + name);
}
void spoilBoth(const std::string& folder) {
    writeFile(folder + "/ZEP.cfg", kIncomplete);
    writeFile(folder + "/EDPasswords.mdb", kNoDatabase);
}
void nothing(const Scene&) {}
void emptyBackup(const Scene& s) { removeBoth(s.backup); }
void emptyLive(const Scene& s) { removeBoth(s.app); }
void spoilBackup(const Scene& s) { spoilBoth(s.backup); }
void spoilLive(const Scene& s) { spoilBoth(s.app); }
void noFolder(const Scene& s) { std::filesystem::remove_all(s.backup); }
void noMemory(const Scene& s) { s.files.outOfMemory = true; }
void emptyAll(const Scene& s) {
    removeBoth(s.app);
    removeBoth(s.backup);
}
void fileForFolder(const Scene& s) {
    noFolder(s);
    writeFile(s.backup, "a file");
}
void vanish(const Scene& s) {
    removeBoth(s.app);
    s.files.writtenFilesVanish = true;
}
void renameColumn(const Scene& s) {
    OtherProgram(s.backup + "/EDPasswords.mdb").run("ALTER TABLE EncDecPasswords RENAME COLUMN Active TO Aktiv");
}
void cutShort(const Scene& s) {
    const std::string file = s.backup + "/EDPasswords.mdb";
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
}

struct Situation {
    const char* name;
    Operations operations;
    void (*arrange)(const Scene&);
    Strings texts;
    bool changesNothing = false;
};
void PrintTo(const Situation& situation, std::ostream* out) { *out << situation.name; }

const Situation kSituations[] = {
    {"both are there", {kBackUp}, nothing, kSaved},
    {"nothing is there", {kBackUp}, emptyAll, kNotThere, true},
    {"only older copies are there", {kBackUp}, emptyLive, kSaved, true},
    {"the live files are not what they should be", {kBackUp}, spoilLive, kNotSaved, true},
    {"a file stands in the folder's place", {kBackUp}, fileForFolder, kNotSaved, true},
    {"memory runs out in a backup", {kBackUp}, noMemory, {"7  Out of memory"}, true},
    {"there is no backup folder", kRestores, noFolder, {}, true},
    {"there is no backup in the folder", kRestores, emptyBackup, {}, true},
    {"settings are restored", kConfigs, nothing, kConfigRestored},
    {"the unload backup holds too few settings", {kCloseConfig}, spoilBackup, kConfigNot, true},
    {"the manual backup holds too few settings", {kHandConfig}, spoilBackup, kHandConfigNot, true},
    {"restored settings are gone at once", kConfigs, vanish, kConfigNot},
    {"memory runs out when settings are restored", kConfigs, noMemory, kConfigError, true},
    {"passwords are restored", kPasswords, nothing, kRestored},
    {"the backup is no database", kPasswords, spoilBackup, kNotRestored, true},
    {"the backup lacks a column", kPasswords, renameColumn, kNotRestored, true},
    {"the backup is cut short", kPasswords, cutShort, kNotRestored, true},
    {"restored passwords are gone at once", kPasswords, vanish, kNotRestored},
    {"memory runs out in a restore from the unload backup", {kClosePassword}, noMemory, kCloseError, true},
    {"memory runs out in a restore from the manual backup", {kHandPassword}, noMemory, kHandError, true},
};

class BackupMessages : public BackupFixture, public testing::WithParamInterface<Situation> {
protected:
    Strings perform(Operation operation) {
        if (operation == kBackUp) return textsOf(backup.backupConfig());
        if (operation == kClosePassword) return textsOf(backup.restoreOnClosePassword());
        if (operation == kHandPassword) return textsOf(backup.restoreNormalPassword());
        operation == kCloseConfig ? backup.restoreOnCloseConfig() : backup.restoreNormalConfig();
        return takeTexts();
    }
    std::map<std::string, std::string> contents() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(app))
            if (entry.is_regular_file()) all[entry.path()] = readFile(entry.path());
        return all;
    }
};

TEST_P(BackupMessages, AreThoseOfTheSituation) {
    const Situation& situation = GetParam();
    const auto atFirst = contents();
    for (const Operation operation : situation.operations) {
        for (const std::string& folder : {hand, unload}) std::filesystem::create_directories(folder);
        for (const auto& [file, bytes] : atFirst) writeFile(file, bytes);
        const bool onClose = operation == kCloseConfig || operation == kClosePassword;
        situation.arrange({app, onClose ? unload : hand, files});
        const auto before = contents();
        EXPECT_EQ(perform(operation), situation.texts);
        if (situation.changesNothing) EXPECT_EQ(contents(), before);
        files.outOfMemory = files.writtenFilesVanish = false;
    }
}

INSTANTIATE_TEST_SUITE_P(All, BackupMessages, testing::ValuesIn(kSituations));

unsigned modeOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

class BackupTest : public BackupFixture {
protected:
    Strings allIn(const std::string& folder) {
        return {readFile(folder + cfg), OtherProgram(folder + mdb)
                                            .column("SELECT group_concat(Password || Active) "
                                                    "FROM EncDecPasswords")[0]};
    }
    void start(Task<void> task) { tasks.start(std::move(task)); }
    /// Lets time pass in small steps until all is done; how long that took.
    std::chrono::milliseconds waitForEnd() {
        for (std::chrono::milliseconds waited{0};; waited += std::chrono::milliseconds(10)) {
            while (bench.loop.turn()) {
            }
            if (tasks.isIdle() || !bench.loop.waitsForTime()) return waited;
            bench.loop.advance(std::chrono::milliseconds(10));
        }
    }
    TaskGroup tasks{bench.loop.queue()};
};

TEST_F(BackupTest, BackupsHoldWhatTheLiveFilesHoldAndArePrivate) {
    std::filesystem::remove_all(hand);
    std::filesystem::remove_all(unload);
    textsOf(backup.backupConfig());
    backup.onCloseConfigBackup();
    for (const std::string& folder : {hand, unload}) {
        EXPECT_EQ(allIn(folder), allIn(app));
        EXPECT_EQ(modeOf(folder), 0700U);
        EXPECT_EQ(modeOf(folder + cfg), 0600U);
        EXPECT_EQ(modeOf(folder + mdb), 0600U);
    }
    EXPECT_EQ(bench.state.FileOpSource, app + mdb);
    EXPECT_EQ(bench.state.FileOpTarget, unload + mdb);
}

TEST_F(BackupTest, ABackupOnClosingWritesOnlyWhatHasChanged) {
    backup.onCloseConfigBackup();
    struct stat before {};
    struct stat after {};
    for (const std::string& name : {cfg, mdb}) {
        ::stat((unload + name).c_str(), &before);
        backup.onCloseConfigBackup();
        ::stat((unload + name).c_str(), &after);
        EXPECT_EQ(before.st_ino, after.st_ino) << name;
    }
    OtherProgram(app + mdb).run("INSERT INTO EncDecPasswords VALUES ('more', 0)");
    backup.onCloseConfigBackup();
    EXPECT_EQ(allIn(unload), allIn(app));
}

TEST_F(BackupTest, ARunThatFoundPartOfTheSettingsKeepsTheOlderCopy) {
    writeFile(app + cfg, kIncomplete);
    bench.settings.loadSettings();
    bench.settings.saveSettings();
    ASSERT_NE(readFile(app + cfg), kIncomplete);
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("close"));
    EXPECT_EQ(activeIn(unload + mdb), Strings{"live"});

    // A restore that did nothing does not make the part whole.
    std::filesystem::remove(hand + cfg);
    backup.restoreNormalConfig();
    bench.settings.loadSettings();
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("close"));

    writeFile(hand + cfg, settingsOf("hand"));
    backup.restoreNormalConfig();
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("hand"));
}

TEST_F(BackupTest, WhatOthersHaveNotCommittedIsNotBackedUp) {
    OtherProgram other(app + mdb);
    other.run("BEGIN IMMEDIATE; UPDATE EncDecPasswords SET Active = 0");
    textsOf(backup.backupConfig());
    backup.onCloseConfigBackup();
    EXPECT_EQ(activeIn(hand + mdb), Strings{"live"});
    EXPECT_EQ(activeIn(unload + mdb), Strings{"live"});
}

TEST_F(BackupTest, ALockedFileKeepsItsOlderCopy) {
    OtherProgram other(app + mdb);
    other.run("BEGIN EXCLUSIVE");
    backup.onCloseConfigBackup();
    EXPECT_EQ(activeIn(unload + mdb), Strings{"close"});
    EXPECT_EQ(readFile(unload + cfg), settingsOf("live"));

    bench.boxes.answerNext(Answer::ok);
    bench.boxes.answerNext(Answer::ok);
    start(backup.backupConfig());
    const auto waited = waitForEnd();
    EXPECT_TRUE(waited >= std::chrono::seconds(5) && waited < std::chrono::seconds(6));
    EXPECT_EQ(takeTexts().back(), "Password file has NOT been saveed to the backup folder.");
    EXPECT_EQ(activeIn(hand + mdb), Strings{"hand"});
}

TEST_F(BackupTest, ARestoreWaitsForALockAndGivesUpAfterFiveSeconds) {
    // A reader is enough: nobody may read while pages are replaced.
    OtherProgram other(app + mdb);
    other.run("BEGIN; SELECT * FROM EncDecPasswords");
    const std::string before = readFile(app + mdb);
    start(backup.restoreNormalPassword());
    const auto waited = waitForEnd();
    EXPECT_TRUE(waited >= std::chrono::seconds(5) && waited < std::chrono::seconds(6));
    EXPECT_EQ(takeTexts(), kNotRestored);
    EXPECT_EQ(readFile(app + mdb), before);

    start(backup.restoreNormalPassword());
    while (bench.loop.turn()) {
    }
    other.run("COMMIT");
    EXPECT_LE(waitForEnd(), std::chrono::milliseconds(50));
    EXPECT_EQ(takeTexts(), kRestored);
    EXPECT_EQ(other.column("SELECT Password FROM EncDecPasswords WHERE Active"), Strings{"hand"});
}

TEST_F(BackupTest, TheEditorDoesNotStandInTheWayOfARestore) {
    FakeEditor editor(store);
    ASSERT_TRUE(bench.loop.valueOf(store.openPasswordStore()));
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored);
    ASSERT_TRUE(bench.loop.valueOf(store.initializeRecordset()));
    EXPECT_EQ(editor.rows, (Strings{"other=False", "hand=True"}));
}

TEST_F(BackupTest, ALiveFileThatIsNoDatabaseIsKeptUnderADatedName) {
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored);
    EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
    EXPECT_EQ(modeOf(app + mdb), 0600U);
    EXPECT_EQ(readFile(app + mdb + ".20261116 140000"), kNoDatabase);

    // The name is taken now: nothing is replaced, and all goes back.
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kNotRestored);
    EXPECT_EQ(readFile(app + mdb), kNoDatabase);
}

TEST_F(BackupTest, AMissingOrEmptyLiveFileIsPutBack) {
    std::filesystem::rename(app + mdb, app + mdb + "-journal");
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored);
    EXPECT_EQ(allIn(app)[1], allIn(hand)[1]);
    EXPECT_TRUE(std::filesystem::exists(app + mdb + ".20261116 140000-journal")) << "what stood alone is kept";
    writeFile(app + mdb, "");
    EXPECT_EQ(textsOf(backup.restoreOnClosePassword()), kRestored);
    EXPECT_EQ(allIn(app)[1], allIn(unload)[1]);
}

TEST_F(BackupTest, NothingButARegularFileIsReplaced) {
    std::filesystem::rename(app + mdb, app + "/elsewhere");
    std::filesystem::create_symlink("elsewhere", app + mdb);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kNotRestored);
    EXPECT_EQ(activeIn(app + "/elsewhere"), Strings{"live"});
}

TEST_F(BackupTest, FilesOfAnotherShapeAreTakenAsTheyAre) {
    // A write-ahead log of which much is not in the file yet, and pages of another size.
    OtherProgram other(app + mdb);
    other.run(
        "PRAGMA page_size = 1024; VACUUM; PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0;"
        "UPDATE EncDecPasswords SET Password = 'logged' WHERE Active");
    textsOf(backup.backupConfig());
    EXPECT_EQ(activeIn(hand + mdb), Strings{"logged"});
    EXPECT_FALSE(std::filesystem::exists(hand + mdb + "-wal"));
    other.run("PRAGMA journal_mode = DELETE");
    EXPECT_EQ(textsOf(backup.restoreOnClosePassword()), kRestored);
    EXPECT_EQ(allIn(app)[1], allIn(unload)[1]);
}

TEST_F(BackupTest, AJournalBesideTheOlderBackupIsNotRolledIntoTheNewOne) {
    {
        // Somebody died while writing into the backup: its pages are new, its journal says what they were.
        OtherProgram other(hand + mdb);
        other.run(
            "PRAGMA cache_size = 1; PRAGMA cache_spill = 1; BEGIN;"
            "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000)"
            " INSERT INTO EncDecPasswords SELECT 'filler' || i, 0 FROM n");
        std::filesystem::copy(hand + mdb + "-journal", hand + "/journal");
        std::filesystem::copy(hand + mdb, hand + "/file");
    }
    std::filesystem::rename(hand + "/file", hand + mdb);
    std::filesystem::rename(hand + "/journal", hand + mdb + "-journal");
    textsOf(backup.backupConfig());
    EXPECT_EQ(allIn(hand), allIn(app));
}

}  // namespace
}  // namespace vantrell::test
