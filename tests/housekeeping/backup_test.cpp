// SPDX-License-Identifier: MIT
#include "housekeeping/backup_fixture.h"

namespace vantrell::test {
namespace {

constexpr char kIncomplete[] = "\"/part\",#FALSE#";
constexpr char kNoDatabase[] = "no database, but long enough to be taken for one by its length alone";

const Strings kSaved{"Current config file is backed up.", "Password file is backed up."};
const Strings kNotSaved{"Configruation file has NOT been saveed to the backup folder.",
                        "Password file has NOT been saveed to the backup folder."};
const Strings kRestored{"Password file has been restored from backup."};
const std::string kKept = "The passwords that were replaced are kept in the file ";
const Strings kNotRestored{"Password file has NOT been restored from backup."};
class BackupTest : public BackupFixture {
protected:
    /// What all four restores say.
    Strings restoreAll() {
        backup.restoreNormalConfig();
        backup.restoreOnCloseConfig();
        Strings texts = textsOfRestore(backup.restoreNormalPassword());
        for (const std::string& text : textsOfRestore(backup.restoreOnClosePassword())) texts.push_back(text);
        return texts;
    }
    /// Without the box that names what was kept.
    Strings textsOfRestore(Task<void> operation) {
        Strings texts = textsOf(std::move(operation));
        if (!texts.empty() && texts.back().starts_with(kKept)) texts.pop_back();
        return texts;
    }
    void spoil(const std::string& passwordFile, const std::string& how) {
        makePasswords(passwordFile, "spoilt");
        if (how == "no database") writeFile(passwordFile, kNoDatabase);
        if (how == "no column") OtherProgram(passwordFile).run("ALTER TABLE EncDecPasswords RENAME Active TO Aktiv");
        if (how == "cut short")
            std::filesystem::resize_file(passwordFile, std::filesystem::file_size(passwordFile) / 2);
    }
    static Strings rowsIn(const std::string& file) {
        return OtherProgram(file).column("SELECT Password || Active FROM EncDecPasswords");
    }
    void start(Task<void> task) { tasks.start(std::move(task)); }
    void expectGivingUpAfterFiveSeconds() {
        const auto waited = bench.loop.waitUntil([this] { return tasks.isIdle(); });
        EXPECT_TRUE(waited >= std::chrono::seconds(5) && waited < std::chrono::seconds(6)) << waited.count();
    }
    TaskGroup tasks{bench.loop.queue()};
};

TEST_F(BackupTest, BackupsHoldWhatTheLiveFilesHoldAndArePrivate) {
    using std::filesystem::perms;
    for (const std::string& folder : {hand, unload}) std::filesystem::remove_all(folder);
    textsOf(backup.backupConfig());
    backup.onCloseConfigBackup();
    for (const std::string& folder : {hand, unload}) {
        EXPECT_EQ(readFile(folder + cfg), readFile(app + cfg));
        EXPECT_EQ(rowsIn(folder + mdb), rowsIn(app + mdb));
        EXPECT_EQ(std::filesystem::status(folder).permissions(), perms::owner_all);
        for (const std::string& file : {folder + cfg, folder + mdb})
            EXPECT_EQ(std::filesystem::status(file).permissions(), perms::owner_read | perms::owner_write);
    }

    // Closing again writes only what has changed.
    for (const std::string& name : {cfg, mdb}) {
        std::filesystem::create_hard_link(unload + name, unload + name + ".first");
        backup.onCloseConfigBackup();
        EXPECT_TRUE(std::filesystem::equivalent(unload + name, unload + name + ".first"));
    }
    OtherProgram(app + mdb).run("INSERT INTO EncDecPasswords VALUES ('more', 0)");
    backup.onCloseConfigBackup();
    EXPECT_EQ(rowsIn(unload + mdb), rowsIn(app + mdb));
}

TEST_F(BackupTest, SaysWhatWasDoneAndPutsNothingBackThatIsNoBackup) {
    const std::string restored = "Configruation file has been restored from backup.";
    EXPECT_EQ(restoreAll(), (Strings{restored, restored, kRestored[0], kRestored[0]}));
    const std::string settings = readFile(app + cfg);
    for (const char* how : {"no database", "no column", "cut short"}) {
        for (const std::string& folder : {hand, unload}) {
            writeFile(folder + cfg, kIncomplete);
            spoil(folder + mdb, how);
        }
        EXPECT_EQ(restoreAll(),
                  (Strings{"Configuration file has NOT been restored from backup.",
                           "Configruation file has NOT been restored from backup.", kNotRestored[0], kNotRestored[0]}));
        EXPECT_EQ(readFile(app + cfg), settings);
        EXPECT_EQ(activeIn(app + mdb), Strings{"close"}) << how;
    }
    for (const std::string& folder : {hand, unload}) std::filesystem::remove_all(folder);
    EXPECT_EQ(restoreAll(), Strings{});

    EXPECT_EQ(textsOf(backup.backupConfig()), kSaved);
    const std::string copy = readFile(hand + cfg);
    writeFile(app + cfg, kIncomplete);
    spoil(app + mdb, "no database");
    EXPECT_EQ(textsOf(backup.backupConfig()), kNotSaved);
    for (const std::string& name : {cfg, mdb}) std::filesystem::remove(app + name);
    EXPECT_EQ(textsOf(backup.backupConfig()), kSaved) << "the older copies are there";
    EXPECT_EQ(readFile(hand + cfg), copy);
    EXPECT_EQ(activeIn(hand + mdb), Strings{"close"});
    for (const std::string& name : {cfg, mdb}) std::filesystem::remove(hand + name);
    EXPECT_EQ(textsOf(backup.backupConfig()),
              (Strings{"Current Config File is NOT backed up.", "Password File is NOT backed up."}));
}

TEST_F(BackupTest, ARunThatFoundPartOfTheSettingsKeepsTheOlderCopy) {
    writeFile(app + cfg, kIncomplete);
    bench.engine.settingsFile.loadSettings();
    ASSERT_TRUE(bench.engine.settings.save());
    ASSERT_NE(readFile(app + cfg), kIncomplete);
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("close"));
    EXPECT_EQ(activeIn(unload + mdb), Strings{"live"});

    // A restore that did nothing does not make the part whole.
    std::filesystem::remove(hand + cfg);
    backup.restoreNormalConfig();
    bench.engine.settingsFile.loadSettings();
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("close"));

    writeFile(hand + cfg, settingsOf("hand"));
    backup.restoreNormalConfig();
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("hand"));
}

TEST_F(BackupTest, PasswordsThatARestoreReplacesAreKept) {
    const std::string dated = app + mdb + ".20361116 140000";
    const Strings restoredAndKept{kRestored[0], kKept + dated};
    const Strings before = rowsIn(app + mdb);
    for (int number = 2; number <= 9; ++number) writeFile(dated + " " + std::to_string(number), "somebody's");
    writeFile(dated, "somebody's");
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kNotRestored) << "no copy can be made";
    EXPECT_EQ(rowsIn(app + mdb), before);
    std::filesystem::remove(dated);

    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), restoredAndKept);
    EXPECT_EQ(rowsIn(app + mdb), rowsIn(hand + mdb));
    EXPECT_EQ(rowsIn(dated), before);
    EXPECT_EQ(std::filesystem::status(dated).permissions(), std::filesystem::perms{0600});
    for (const char* ending : {"-journal", "-wal", "-shm"}) EXPECT_FALSE(bench.exists(app + mdb + ending)) << ending;

    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored) << "there is nothing else to keep";
    // Another program's rows are seen too, also where they are not in the file itself yet.
    OtherProgram(app + mdb).run(
        "PRAGMA journal_mode = WAL; PRAGMA wal_autocheckpoint = 0; INSERT INTO EncDecPasswords VALUES ('late', 0)");
    std::filesystem::remove(dated + " 2");
    textsOf(backup.restoreNormalPassword());
    EXPECT_EQ(rowsIn(dated + " 2").back(), "late0");
}

TEST_F(BackupTest, ANewDataFolderReplacesNoOlderCopy) {
    bench.state.settings = {};
    ASSERT_TRUE(bench.engine.settings.save());
    writeFile(app + mdb, std::string(suppliedPasswordFile()));
    backup.onCloseConfigBackup();
    EXPECT_EQ(readFile(unload + cfg), settingsOf("close"));
    EXPECT_EQ(activeIn(unload + mdb), Strings{"close"});
    for (const std::string& name : {cfg, mdb}) std::filesystem::remove(unload + name);
    backup.onCloseConfigBackup();
    for (const std::string& name : {cfg, mdb}) EXPECT_EQ(readFile(unload + name), readFile(app + name));
}

TEST_F(BackupTest, ALockedFileKeepsItsOlderCopy) {
    OtherProgram other(app + mdb);
    other.run("BEGIN EXCLUSIVE");
    backup.onCloseConfigBackup();
    EXPECT_EQ(activeIn(unload + mdb), Strings{"close"});
    EXPECT_EQ(readFile(unload + cfg), settingsOf("live"));
    for (int box = 0; box < 2; ++box) bench.boxes.answerNext(Answer::ok);
    start(backup.backupConfig());
    expectGivingUpAfterFiveSeconds();
    EXPECT_EQ(takeTexts(), (Strings{kSaved[0], kNotSaved[1]}));
    EXPECT_EQ(activeIn(hand + mdb), Strings{"hand"});
}

TEST_F(BackupTest, ARestoreWaitsForALockAndGivesUpAfterFiveSeconds) {
    // A reader is enough: nobody may read while pages are replaced.
    OtherProgram other(app + mdb);
    other.run("BEGIN; SELECT * FROM EncDecPasswords");
    const std::string before = readFile(app + mdb);
    start(backup.restoreNormalPassword());
    expectGivingUpAfterFiveSeconds();
    EXPECT_EQ(takeTexts(), kNotRestored);
    EXPECT_EQ(readFile(app + mdb), before);

    start(backup.restoreNormalPassword());
    bench.loop.settle();
    other.run("COMMIT");
    EXPECT_LE(bench.loop.waitUntil([this] { return tasks.isIdle(); }), std::chrono::milliseconds(50));
    EXPECT_EQ(takeTexts(), (Strings{kRestored[0], kKept + app + mdb + ".20361116 140000"}));
    EXPECT_EQ(PassBench::names(app).size(), 5U) << "the tries before have kept nothing";
    EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
}

TEST_F(BackupTest, ALiveFileThatHoldsNoPasswordsIsReplacedAndWhatItHoldsIsKept) {
    const std::string dated = app + mdb + ".20361116 140000";
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored);
    EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
    EXPECT_EQ(readFile(dated), kNoDatabase);
    // The name is taken now: nothing is replaced, and all goes back.
    writeFile(app + mdb, kNoDatabase);
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kNotRestored);
    EXPECT_EQ(readFile(app + mdb), kNoDatabase);
    writeFile(app + mdb, "");
    EXPECT_EQ(textsOf(backup.restoreOnClosePassword()), kRestored);
    EXPECT_EQ(rowsIn(app + mdb), rowsIn(unload + mdb));
    std::filesystem::rename(app + mdb, app + mdb + "-journal");
    EXPECT_EQ(textsOf(backup.restoreNormalPassword()), kRestored);
    EXPECT_EQ(rowsIn(app + mdb), rowsIn(hand + mdb));
    EXPECT_TRUE(std::filesystem::exists(dated + "-journal")) << "what stood alone is kept";
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
    EXPECT_EQ(textsOfRestore(backup.restoreOnClosePassword()), kRestored);
    EXPECT_EQ(rowsIn(app + mdb), rowsIn(unload + mdb));
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
    EXPECT_EQ(rowsIn(hand + mdb), rowsIn(app + mdb));
}

}  // namespace
}  // namespace vantrell::test
