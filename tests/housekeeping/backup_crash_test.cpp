// SPDX-License-Identifier: MIT
#include <functional>
#include <set>

#include "housekeeping/backup_fixture.h"
#include "support/killed_child.h"

namespace vantrell::test {
namespace {

/// Works on the same files as they were at first, again and again, killed at a later call each time.
class BackupCrashTest : public BackupFixture {
protected:
    void SetUp() override {
        if (killedAtCall(1, [] {}) != ChildEnd::killed) GTEST_SKIP() << "child processes cannot be traced here";
        keepFiles();
    }
    void killEverywhere(const std::function<void()>& work, const std::function<void()>& look) {
        for (int call = 1;; ++call, ++kills) {
            putBack();
            const ChildEnd end = killedAtCall(call, work);
            ASSERT_NE(end, ChildEnd::failed);
            ASSERT_NO_FATAL_FAILURE(look()) << "killed at call " << call;
            if (end == ChildEnd::finished) break;
        }
    }
    /// The state to which each round goes back.
    void keepFiles() {
        kept.clear();
        for (const std::string& folder : {app, hand, unload})
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                if (entry.is_regular_file()) kept[entry.path()] = readFile(entry.path());
    }
    void putBack() {
        for (const std::string& folder : {app, hand, unload}) {
            std::vector<std::filesystem::path> present;
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                if (entry.is_regular_file()) present.push_back(entry.path());
            for (const auto& file : present) std::filesystem::remove(file);
        }
        for (const auto& [file, bytes] : kept) writeFile(file, bytes);
    }

    void save(const std::string& password) {
        FakeEditor editor(store);
        editor.password = password;
        editor.active = true;
        bench.loop.valueOf(store.savePassword());
    }
    /// The last state of a save in which a journal says that the live file's pages are to be undone.
    void keepHalfSavedFiles() {
        const auto before = kept;
        std::map<std::string, std::string> halfSaved;
        killEverywhere([this] { save("saved"); },
                       [&] {
                           if (readFile(app + mdb + "-journal").empty()) return;
                           keepFiles();
                           halfSaved = std::exchange(kept, before);
                       });
        ASSERT_TRUE(halfSaved[app + mdb] != kept[app + mdb]) << "no save was seen half done";
        kept = halfSaved;
        putBack();
        kills = 0;
    }
    /// Opened where no journal stands beside it, as somebody would who takes it along.
    Strings activeInCopyOf(const std::string& file) {
        const TemporaryFolder elsewhere;
        writeFile(elsewhere / "copy", readFile(file));
        return activeIn(elsewhere / "copy");
    }

    std::map<std::string, std::string> kept;
    std::set<Strings> seen;
    std::set<std::string> seenSettings;
    int kills = 0;
};

const std::set<Strings> kBackedUp{{"hand"}, {"live"}};

TEST_F(BackupCrashTest, EachCopyOfABackupIsTheOlderOrTheNewOne) {
    const std::tuple<std::string, std::string, std::function<void()>> backups[] = {
        {hand, "hand", [this] { textsOf(backup.backupConfig()); }},
        {unload, "close", [this] { backup.onCloseConfigBackup(); }}};
    for (const auto& [folder, older, work] : backups) {
        seen.clear();
        seenSettings.clear();
        killEverywhere(work, [&, &into = folder] {
            seen.insert(activeInCopyOf(into + mdb));
            seenSettings.insert(readFile(into + cfg));
            EXPECT_EQ(activeIn(app + mdb), Strings{"live"});
            EXPECT_EQ(readFile(app + cfg), kept[app + cfg]);
        });
        EXPECT_EQ(seen, (std::set<Strings>{{older}, {"live"}}));
        EXPECT_EQ(seenSettings, (std::set{settingsOf(older), settingsOf("live")}));
    }
    EXPECT_GT(kills, 100);
}

TEST_F(BackupCrashTest, ARestoreLeavesTheLiveFilesOldOrNew) {
    killEverywhere(
        [this] {
            backup.restoreNormalConfig();
            textsOf(backup.restoreNormalPassword());
        },
        [this] {
            seen.insert(activeIn(app + mdb));
            if (activeIn(app + mdb) == Strings{"hand"})
                EXPECT_EQ(activeInCopyOf(app + mdb + ".20361116 140000"), Strings{"live"});
            seenSettings.insert(readFile(app + cfg));
            EXPECT_EQ(activeInCopyOf(hand + mdb), Strings{"hand"});
        });
    EXPECT_EQ(seen, kBackedUp);
    EXPECT_EQ(seenSettings, (std::set{settingsOf("hand"), settingsOf("live")}));
    EXPECT_GT(kills, 50);
}

TEST_F(BackupCrashTest, ALiveFileThatIsNoDatabaseKeepsItsNameUntilTheNewOneStands) {
    const std::string broken(100, 'x');
    const std::string ended(28, '\0');  // a journal that SQLite leaves alone
    const std::string journal = app + mdb + "-journal";
    const std::string dated = app + mdb + ".20361116 140000";
    writeFile(app + mdb, broken);
    writeFile(journal, ended);
    keepFiles();
    killEverywhere([this] { textsOf(backup.restoreNormalPassword()); },
                   [&] {
                       ASSERT_TRUE(std::filesystem::exists(app + mdb));
                       if (readFile(app + mdb) == broken) return;
                       EXPECT_FALSE(std::filesystem::exists(journal));
                       EXPECT_EQ(readFile(dated), broken);
                       EXPECT_EQ(readFile(dated + "-journal"), ended);
                       seen.insert(activeIn(app + mdb));
                   });
    EXPECT_EQ(seen, std::set<Strings>{{"hand"}});
}

TEST_F(BackupCrashTest, ARestoreHoldsTheBackupsRowsWhereverASaveDiedBefore) {
    killEverywhere([this] { save("saved"); },
                   [this] {
                       EXPECT_EQ(textsOf(backup.restoreNormalPassword()).front(),
                                 "Password file has been restored from backup.");
                       seen.insert(activeIn(app + mdb));
                   });
    EXPECT_EQ(seen, std::set<Strings>{{"hand"}});
    EXPECT_GT(kills, 50);
}

TEST_F(BackupCrashTest, ARestoreMayDieAfterASaveDied) {
    ASSERT_NO_FATAL_FAILURE(keepHalfSavedFiles());
    killEverywhere([this] { textsOf(backup.restoreNormalPassword()); }, [this] { seen.insert(activeIn(app + mdb)); });
    EXPECT_EQ(seen, kBackedUp);
    EXPECT_GT(kills, 50);
}

TEST_F(BackupCrashTest, ABackupAfterASaveDiedHoldsWhatWasThereBefore) {
    ASSERT_NO_FATAL_FAILURE(keepHalfSavedFiles());
    // Plain copies would not hold: this state is one that does harm.
    const std::string active = "SELECT Password FROM EncDecPasswords WHERE Active";
    const TemporaryFolder elsewhere;
    writeFile(elsewhere / "copy", readFile(app + mdb));
    EXPECT_NE(OtherProgram(elsewhere / "copy").column(active), Strings{"live"});
    writeFile(app + mdb, readFile(hand + mdb));
    EXPECT_NE(OtherProgram(app + mdb).column(active), Strings{"hand"});
    putBack();
    textsOf(backup.backupConfig());
    EXPECT_EQ(activeInCopyOf(hand + mdb), Strings{"live"});
}

}  // namespace
}  // namespace vantrell::test
