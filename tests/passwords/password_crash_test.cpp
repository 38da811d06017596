// SPDX-License-Identifier: MIT
#include <set>

#include "passwords/password_fixture.h"
#include "support/killed_child.h"

namespace vantrell::test {
namespace {

using PasswordCrashTest = PasswordFixture;

// "old" is active, and a child process makes "new" the active one, again and again on the same file as it was at first,
// killed at a later call each time.
TEST_F(PasswordCrashTest, ExactlyOneIsActiveWhereverASaveDies) {
    if (killedAtCall(1, [] {}) != ChildEnd::killed) GTEST_SKIP() << "child processes cannot be traced here";
    fill("INSERT INTO EncDecPasswords VALUES ('old', 1), ('other', 0), ('new', 0)");
    const std::string before = readFile(file);
    std::set<Strings> active;
    int deaths = 0;
    for (ChildEnd end = ChildEnd::killed; end == ChildEnd::killed; ++deaths) {
        writeFile(file, before);
        end = killedAtCall(deaths + 1, [this] { save("new", true); });
        EXPECT_NE(end, ChildEnd::failed);
        OtherProgram survivor(file);
        EXPECT_EQ(survivor.column("PRAGMA integrity_check"), Strings{"ok"});
        active.insert(survivor.column("SELECT Password FROM EncDecPasswords WHERE Active"));
    }
    EXPECT_GT(deaths, 50);
    EXPECT_EQ(active, (std::set<Strings>{{"old"}, {"new"}}));
}

}  // namespace
}  // namespace vantrell::test
