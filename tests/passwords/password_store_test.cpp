// SPDX-License-Identifier: MIT
#include <set>

#include "passwords/password_fixture.h"
#include "support/documented_blocks.h"
#include "support/killed_child.h"

namespace vantrell::test {
namespace {

using PasswordStoreTest = PasswordFixture;

TEST_F(PasswordStoreTest, DocumentedFilesGiveTheDocumentedPassword) {
    const auto blocks = documentedBlocks("formats.md", "sql");
    ASSERT_EQ(blocks.size(), 2U);
    EXPECT_EQ(OtherProgram(file).column("SELECT sql || ';' FROM sqlite_schema"), Strings{blocks[0][0]});
    const Strings active = {"secret", "12345"};
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        std::string sql;
        for (const std::string& line : blocks[i]) sql += line + '\n';
        makeFile(sql);
        EXPECT_EQ(current(), active[i]);
    }
    EXPECT_TRUE(save("b", true));
    EXPECT_EQ(current(), "b");
    EXPECT_EQ(OtherProgram(file).column("SELECT Id || Note || Password || Active FROM EncDecPasswords"),
              (Strings{"1not chosena0", "2keptb1", "3kept123450", "4too latec0"}));
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(PasswordStoreTest, SavesKeepAtMostTheirOneActivePasswordAndNoneTwice) {
    const struct {
        const char* password;
        bool active;
        Strings stored;
    } saves[] = {{"one", true, {"one=1"}},
                 {"One", false, {"one=1", "One=0"}},
                 {"one ", true, {"one=0", "One=0", "one =1"}},
                 {"one", true, {"one=1", "One=0", "one =0"}},
                 {"one", false, {"one=0", "One=0", "one =0"}},
                 {"it's \"x\"; --", false, {"one=0", "One=0", "one =0", "it's \"x\"; --=0"}}};
    for (const auto& [password, active, after] : saves) {
        EXPECT_TRUE(save(password, active));
        EXPECT_EQ(stored(), after);
    }
    fill("UPDATE EncDecPasswords SET Active = 1");
    EXPECT_TRUE(save("One", false));
    EXPECT_EQ(stored(), (Strings{"one=1", "One=0", "one =1", "it's \"x\"; --=1"})) << "it touches no other record";
}

TEST_F(PasswordStoreTest, DeletedPasswordIsNotToBeFoundInTheFile) {
    EXPECT_TRUE(save("LongForgotten", true));
    EXPECT_NE(readFile(file).find("LongForgotten"), std::string::npos);
    EXPECT_TRUE(erase("LongForgotten"));
    EXPECT_EQ(readFile(file).find("LongForgotten"), std::string::npos);
}

TEST_F(PasswordStoreTest, FirstActivePasswordWinsAndNoneIsNone) {
    EXPECT_EQ(current(), "");
    fill("INSERT INTO EncDecPasswords VALUES ('a', 0), ('b', 1), ('c', 1)");
    EXPECT_EQ(current(), "b");
    fill("UPDATE EncDecPasswords SET Active = 0");
    EXPECT_EQ(current(), "");
    EXPECT_TRUE(boxes.informed.empty());
    fill("UPDATE EncDecPasswords SET Active = 1, Password = 'gr\xC3\xBCn' WHERE Password = 'a'");
    EXPECT_EQ(current(), "") << "it comes first, and it is not ASCII";
    EXPECT_NE(theBox().text.find("ASCII"), std::string::npos);
}

// "old" is active, and a child process makes "new" the active one, again and again on the same file as it was at first,
// killed at a later call each time.
TEST_F(PasswordStoreTest, ExactlyOneIsActiveWhereverASaveDies) {
    if (!isKilledAtCall(1, [] {})) GTEST_SKIP() << "child processes cannot be traced here";
    fill("INSERT INTO EncDecPasswords VALUES ('old', 1), ('other', 0), ('new', 0)");
    const std::string before = readFile(file);
    std::set<Strings> active;
    int deaths = 0;
    for (bool isKilled = true; isKilled; ++deaths) {
        writeFile(file, before);
        isKilled = isKilledAtCall(deaths + 1, [this] { save("new", true); });
        OtherProgram survivor(file);
        EXPECT_EQ(survivor.column("PRAGMA integrity_check"), Strings{"ok"});
        active.insert(survivor.column("SELECT Password FROM EncDecPasswords WHERE Active"));
    }
    EXPECT_GT(deaths, 50);
    EXPECT_EQ(active, (std::set<Strings>{{"old"}, {"new"}}));
}

Task<void> forget(Task<bool> task) { static_cast<void>(co_await std::move(task)); }

/// The file holds "old", active. Another program locks it.
class LockedPasswordFile : public PasswordFixture {
protected:
    LockedPasswordFile() {
        fill("INSERT INTO EncDecPasswords VALUES ('old', 1)");
        window.text = "new";
        window.active = true;
    }

    void start(Task<bool> task) {
        tasks.start(forget(std::move(task)));
        loop.settle();
    }
    void waitForResult() {
        loop.waitUntil([this] { return tasks.isIdle(); });
    }

    OtherProgram other{file};
    TaskGroup tasks{loop.queue()};
};

TEST_F(LockedPasswordFile, SaveThatIsCutOffLeavesTheTableAndLocksNothing) {
    for (const bool isAborted : {true, false}) {
        other.run("BEGIN; SELECT * FROM EncDecPasswords");
        start(store.savePassword());
        ASSERT_TRUE(loop.waitsForTime());
        isAborted ? tasks.abort() : store.closeStoreObjects();
        other.run("COMMIT; BEGIN EXCLUSIVE; COMMIT");
        waitForResult();
        EXPECT_EQ(stored(), Strings{"old=1"});
        EXPECT_FALSE(store.isBusy());
        EXPECT_EQ(boxes.informed.size(), isAborted ? 0U : 1U);
    }
    expectErrorBox(adErrObjectClosed, "closed");
    EXPECT_EQ(lookUp(), "old");
}

TEST_F(LockedPasswordFile, LookUpWaitsForASaveAndIsAbortedCleanly) {
    other.run("BEGIN IMMEDIATE");
    start(store.savePassword());
    TaskGroup aborted(loop.queue());
    aborted.start(lookUpOnce());
    TaskGroup lookups(loop.queue());
    lookups.start(lookUpOnce());
    loop.settle();
    EXPECT_TRUE(activePassword.isBeingLookedUp());
    aborted.abort();
    other.run("COMMIT");
    waitForResult();
    EXPECT_TRUE(loop.turnUntil([&] { return lookups.isIdle(); }));
    EXPECT_EQ(activePassword.known(), "new");
    EXPECT_FALSE(activePassword.isBeingLookedUp());
}

}  // namespace
}  // namespace vantrell::test
