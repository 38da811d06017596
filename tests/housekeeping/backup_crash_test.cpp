// SPDX-License-Identifier: MIT
#include <functional>
#include <set>

#include "housekeeping/backup_fixture.h"
#include "support/killed_child.h"

namespace vantrell::test {
namespace {

/// Works on the same files as they were at first, again and again, killed at a later call each time. What comes of
/// backups of files that are written whole is not looked at here: they lie in the simulated world too.
class BackupCrashTest : public BackupFixture {
protected:
    void SetUp() override {
        if (!isKilledAtCall(1, [] {})) GTEST_SKIP() << "child processes cannot be traced here";
        copyAll(app, kept.path());
    }
    static void copyAll(const std::string& from, const std::string& to) {
        std::filesystem::remove_all(to);
        std::filesystem::copy(from, to, std::filesystem::copy_options::recursive);
    }
    void killEverywhere(const std::function<void()>& work, const std::function<void()>& look) {
        bool isKilled = true;
        for (int call = 1; isKilled; ++call, ++kills) {
            copyAll(kept.path(), app);
            isKilled = isKilledAtCall(call, work);
            ASSERT_NO_FATAL_FAILURE(look()) << "killed at call " << call;
        }
    }
    /// From now on the files are as in the last state of a save in which a journal says that the live file's pages are
    /// to be undone.
    void keepHalfSavedFiles() {
        const TemporaryFolder halfSaved;
        bench.passwordWindow.text = "saved";
        bench.passwordWindow.active = true;
        store.attachEditor(bench.engine.passwordEditor);
        killEverywhere([this] { bench.loop.valueOf(store.savePassword()); },
                       [&] {
                           if (!readFile(app + mdb + "-journal").empty()) copyAll(app, halfSaved.path());
                       });
        ASSERT_NE(readFile(halfSaved.path() + mdb), readFile(kept.path() + mdb)) << "no save was seen half done";
        copyAll(halfSaved.path(), kept.path());
        copyAll(halfSaved.path(), app);
    }
    /// Opened where no journal stands beside it, as somebody would who takes it along.
    static Strings activeInCopyOf(const std::string& file) {
        const TemporaryFolder elsewhere;
        writeFile(elsewhere / "copy", readFile(file));
        return activeIn(elsewhere / "copy");
    }

    const TemporaryFolder kept;
    const std::string dated = app + mdb + ".20361116 140000";
    int kills = 0;
};

/// With and without a save that died before.
class RestoreCrashTest : public BackupCrashTest, public testing::WithParamInterface<bool> {};
INSTANTIATE_TEST_SUITE_P(, RestoreCrashTest, testing::Values(false, true));

TEST_P(RestoreCrashTest, LeavesTheOldPasswordsOrTheNewOnes) {
    if (GetParam()) ASSERT_NO_FATAL_FAILURE(keepHalfSavedFiles());
    std::set<Strings> seen;
    kills = 0;
    killEverywhere([this] { textsOf(backup.restoreNormalPassword()); },
                   [&] {
                       seen.insert(activeIn(app + mdb));
                       if (activeIn(app + mdb) == Strings{"hand"}) EXPECT_EQ(activeInCopyOf(dated), Strings{"live"});
                       EXPECT_EQ(activeInCopyOf(hand + mdb), Strings{"hand"});
                   });
    EXPECT_EQ(seen, (std::set<Strings>{{"hand"}, {"live"}}));
    EXPECT_GT(kills, 50);
}

TEST_F(BackupCrashTest, ALiveFileThatIsNoDatabaseKeepsItsNameUntilTheNewOneStands) {
    const std::string broken(100, 'x');
    const std::string ended(28, '\0');  // a journal that SQLite leaves alone
    const std::string journal = app + mdb + "-journal";
    writeFile(app + mdb, broken);
    writeFile(journal, ended);
    copyAll(app, kept.path());
    killEverywhere([this] { textsOf(backup.restoreNormalPassword()); },
                   [&] {
                       ASSERT_TRUE(std::filesystem::exists(app + mdb));
                       if (readFile(app + mdb) == broken) return;
                       EXPECT_FALSE(std::filesystem::exists(journal));
                       EXPECT_EQ(readFile(dated), broken);
                       EXPECT_EQ(readFile(dated + "-journal"), ended);
                       EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
                   });
    EXPECT_EQ(activeIn(app + mdb), Strings{"hand"});
}

TEST_F(BackupCrashTest, ABackupAfterASaveDiedHoldsWhatWasThereBefore) {
    ASSERT_NO_FATAL_FAILURE(keepHalfSavedFiles());
    textsOf(backup.backupConfig());
    EXPECT_EQ(activeInCopyOf(hand + mdb), Strings{"live"});
}

}  // namespace
}  // namespace vantrell::test
