// SPDX-License-Identifier: MIT
#include <set>

#include "passwords/password_fixture.h"
#include "support/killed_child.h"

namespace vantrell::test {
namespace {

/// "old" is active, and a child process makes "new" the active one, again and again on the same file as it was at
/// first, killed at a later call each time. The answer is what was active after each death, and the number of deaths.
class CrashTest : public PasswordFixture {
protected:
    void SetUp() override {
        if (killedAtCall(1, [] {}) != ChildEnd::killed) GTEST_SKIP() << "child processes cannot be traced here";
    }
    template <class Change>
    std::set<Strings> activeAfterDeaths(Change change, int& deaths) {
        fill("INSERT INTO EncDecPasswords VALUES ('old', 1), ('other', 0), ('new', 0)");
        const std::string before = readFile(file);
        std::set<Strings> seen;
        for (deaths = 0;; ++deaths) {
            writeFile(file, before);
            const ChildEnd end = killedAtCall(deaths + 1, change);
            EXPECT_NE(end, ChildEnd::failed);
            OtherProgram survivor(file);
            EXPECT_EQ(survivor.column("PRAGMA integrity_check"), Strings{"ok"});
            seen.insert(survivor.column("SELECT Password FROM EncDecPasswords WHERE Active"));
            if (end != ChildEnd::killed) return seen;
        }
    }
};

TEST_F(CrashTest, ExactlyOneIsActiveWhereverASaveDies) {
    int deaths = 0;
    const auto seen = activeAfterDeaths([this] { save("new", true); }, deaths);
    EXPECT_GT(deaths, 50);
    EXPECT_EQ(seen, (std::set<Strings>{{"old"}, {"new"}}));
}

TEST_F(CrashTest, NoneIsActiveWhereTwoTransactionsAreCutApart) {
    // Shows that the deaths fall where they could do harm.
    int deaths = 0;
    const auto clearThenSet = [this] {
        fill("UPDATE EncDecPasswords SET Active = 0");
        fill("UPDATE EncDecPasswords SET Active = 1 WHERE Password = 'new'");
    };
    EXPECT_TRUE(activeAfterDeaths(clearThenSet, deaths).contains(Strings{}));
}

}  // namespace
}  // namespace vantrell::test
