// SPDX-License-Identifier: MIT
#include <sys/stat.h>

#include <optional>

#include "housekeeping/backup_fixture.h"

namespace vantrell::test {
namespace {

constexpr char kIncomplete[] = "\"/part\",#FALSE#";
constexpr char kNoDatabase[] = "no database, but long enough to be taken for one by its length alone";

enum class Operation { backUp, closeConfig, handConfig, closePassword, handPassword };

struct Situation {
    const char* name;
    std::vector<Operation> operations;
    std::function<void(const std::string& app, const std::string& backup, TroubledFiles& files)> arrange;
    Strings texts;
    bool changesNothing = false;
};

void PrintTo(const Situation& situation, std::ostream* out) { *out << situation.name; }

using Fs = const std::string&;
void removeBoth(Fs folder) {
    std::filesystem::remove(folder + "/ZEP.cfg");
    std::filesystem::remove(folder + "/EDPasswords.mdb");
}
void spoilBoth(Fs folder) {
    writeFile(folder + "/ZEP.cfg", kIncomplete);
    writeFile(folder + "/EDPasswords.mdb", kNoDatabase);
}
void nothing(Fs, Fs, TroubledFiles&) {}
void spoilBackup(Fs, Fs backup, TroubledFiles&) { spoilBoth(backup); }
void vanish(Fs app, Fs, TroubledFiles& files) {
    removeBoth(app);
    files.writtenFilesVanish = true;
}
void noMemory(Fs, Fs, TroubledFiles& files) { files.outOfMemory = true; }
void dropTable(Fs, Fs backup, TroubledFiles&) {
    OtherProgram(backup + "/EDPasswords.mdb").run("ALTER TABLE EncDecPasswords RENAME COLUMN Active TO Aktiv");
}
void cutShort(Fs, Fs backup, TroubledFiles&) {
    const std::string file = backup + "/EDPasswords.mdb";
    std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
}

const Situation kSituations[] = {
    {"both are there",
     {Operation::backUp},
     nothing,
     {"Current config file is backed up.", "Password file is backed up."}},
    {"nothing is there",
     {Operation::backUp},
     [](Fs app, Fs backup, TroubledFiles&) { removeBoth(app), removeBoth(backup); },
     {"Current Config File is NOT backed up.", "Password File is NOT backed up."}},
    {"only older copies are there",
     {Operation::backUp},
     [](Fs app, Fs, TroubledFiles&) { removeBoth(app); },
     {"Current config file is backed up.", "Password file is backed up."},
     true},
    {"the live files are not what they should be",
     {Operation::backUp},
     [](Fs app, Fs, TroubledFiles&) { spoilBoth(app); },
     {"Configruation file has NOT been saveed to the backup folder.",
      "Password file has NOT been saveed to the backup folder."},
     true},
    {"a file stands in the folder's place",
     {Operation::backUp},
     [](Fs, Fs backup, TroubledFiles&) { std::filesystem::remove_all(backup), writeFile(backup, "a file"); },
     {"Configruation file has NOT been saveed to the backup folder.",
      "Password file has NOT been saveed to the backup folder."}},
    {"memory runs out in a backup", {Operation::backUp}, noMemory, {"7  Out of memory"}, true},

    {"there is no backup folder",
     {Operation::closeConfig, Operation::handConfig, Operation::closePassword, Operation::handPassword},
     [](Fs, Fs backup, TroubledFiles&) { std::filesystem::remove_all(backup); },
     {},
     true},
    {"there is no backup in the folder",
     {Operation::closeConfig, Operation::handConfig, Operation::closePassword, Operation::handPassword},
     [](Fs, Fs backup, TroubledFiles&) { removeBoth(backup); },
     {},
     true},

    {"settings are restored",
     {Operation::closeConfig, Operation::handConfig},
     nothing,
     {"Configruation file has been restored from backup."}},
    {"the unload backup holds too few settings",
     {Operation::closeConfig},
     spoilBackup,
     {"Configruation file has NOT been restored from backup."},
     true},
    {"the manual backup holds too few settings",
     {Operation::handConfig},
     spoilBackup,
     {"Configuration file has NOT been restored from backup."},
     true},
    {"restored settings are gone at once",
     {Operation::closeConfig, Operation::handConfig},
     vanish,
     {"Configruation file has NOT been restored from backup."}},
    {"memory runs out when settings are restored",
     {Operation::closeConfig, Operation::handConfig},
     noMemory,
     {"7  Out of memory   Configruation file has NOT been restored from backup."},
     true},

    {"passwords are restored",
     {Operation::closePassword, Operation::handPassword},
     nothing,
     {"Password file has been restored from backup."}},
    {"the backup is no database",
     {Operation::closePassword, Operation::handPassword},
     spoilBackup,
     {"Password file has NOT been restored from backup."},
     true},
    {"the backup lacks a column",
     {Operation::closePassword, Operation::handPassword},
     dropTable,
     {"Password file has NOT been restored from backup."},
     true},
    {"the backup is cut short",
     {Operation::closePassword, Operation::handPassword},
     cutShort,
     {"Password file has NOT been restored from backup."},
     true},
    {"restored passwords are gone at once",
     {Operation::closePassword, Operation::handPassword},
     vanish,
     {"Password file has NOT been restored from backup."}},
    {"memory runs out when the unload passwords are restored",
     {Operation::closePassword},
     noMemory,
     {"7  Out of memory   Password file has NOT been restored from backup."},
     true},
    {"memory runs out when the manual passwords are restored",
     {Operation::handPassword},
     noMemory,
     {"7  Out of memory  Password file has NOT been restored from backup."},
     true},
};

class BackupMessages : public BackupFixture, public testing::WithParamInterface<Situation> {
protected:
    Strings perform(Operation operation) {
        switch (operation) {
            case Operation::backUp:
                return textsOf(backup.backupConfig());
            case Operation::closeConfig:
                return backup.restoreOnCloseConfig(), takeTexts();
            case Operation::handConfig:
                return backup.restoreNormalConfig(), takeTexts();
            case Operation::closePassword:
                return textsOf(backup.restoreOnClosePassword());
            case Operation::handPassword:
                return textsOf(backup.restoreNormalPassword());
        }
        return {};
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
        for (const auto& [file, bytes] : atFirst) {
            std::filesystem::create_directories(std::filesystem::path(file).parent_path());
            writeFile(file, bytes);
        }
        const bool onClose = operation == Operation::closeConfig || operation == Operation::closePassword;
        situation.arrange(app, onClose ? unload : hand, files);
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
    const Strings restored{"Password file has been restored from backup."};
    const Strings notRestored{"Password file has NOT been restored from backup."};
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
    EXPECT_EQ(takeTexts(), notRestored);
    EXPECT_EQ(readFile(app + mdb), before);

    start(backup.restoreNormalPassword());
    while (bench.loop.turn()) {
    }
    other.run("COMMIT");
    EXPECT_LE(waitForEnd(), std::chrono::milliseconds(50));
    EXPECT_EQ(takeTexts(), restored);
    EXPECT_EQ(other.column("SELECT Password FROM EncDecPasswords WHERE Active"), Strings{"hand"});
}

TEST_F(BackupTest, TheEditorDoesNotStandInTheWayOfARestore) {
    FakeEditor editor(store);
    ASSERT_TRUE(bench.loop.valueOf(store.openPasswordStore()));
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), restored);
    ASSERT_TRUE(bench.loop.valueOf(store.initializeRecordset()));
    EXPECT_EQ(editor.rows, (Strings{"other=False", "hand=True"}));
}

TEST_F(BackupTest, ALiveFileThatIsNoDatabaseIsKeptUnderADatedName) {
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), restored);
    EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
    EXPECT_EQ(modeOf(app + mdb), 0600U);
    EXPECT_EQ(readFile(app + mdb + ".20261116 140000"), kNoDatabase);

    // The name is taken now: nothing is replaced, and all goes back.
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), notRestored);
    EXPECT_EQ(readFile(app + mdb), kNoDatabase);
}

TEST_F(BackupTest, AMissingOrEmptyLiveFileIsPutBack) {
    std::filesystem::rename(app + mdb, app + mdb + "-journal");
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), restored);
    EXPECT_EQ(allIn(app)[1], allIn(hand)[1]);
    EXPECT_TRUE(std::filesystem::exists(app + mdb + ".20261116 140000-journal")) << "what stood alone is kept";
    writeFile(app + mdb, "");
    EXPECT_EQ(textsOf(backup.restoreOnClosePassword()), restored);
    EXPECT_EQ(allIn(app)[1], allIn(unload)[1]);
}

TEST_F(BackupTest, NothingButARegularFileIsReplaced) {
    std::filesystem::rename(app + mdb, app + "/elsewhere");
    std::filesystem::create_symlink("elsewhere", app + mdb);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), notRestored);
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
    EXPECT_EQ(textsOf(backup.restoreOnClosePassword()), restored);
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
