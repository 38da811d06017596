// SPDX-License-Identifier: MIT
#include <optional>

#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

Task<void> keepResult(Task<bool> task, std::optional<bool>* result) { *result = co_await std::move(task); }

/// The file holds "old", active. Another program locks it.
class LockedPasswordFile : public PasswordFixture {
protected:
    LockedPasswordFile() {
        fill("INSERT INTO EncDecPasswords VALUES ('old', 1)");
        window.text = "new";
        window.active = true;
    }

    void start(Task<bool> task) {
        result.reset();
        tasks.start(keepResult(std::move(task), &result));
        loop.settle();
    }
    std::chrono::milliseconds waitForResult() {
        return loop.waitUntil([this] { return result.has_value(); });
    }

    OtherProgram other{file};
    TaskGroup tasks{loop.queue()};
    std::optional<bool> result;
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
