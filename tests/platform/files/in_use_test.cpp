// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

class InUse : public WithToolbox {
public:
    InUse() {
        path = folder / "file";
        writeFile(path, "contents");
    }
    std::string path;
};

TEST_F(InUse, AFileThatIsOpenForWritingIsInUseUntilItIsClosed) {
    {
        const LinuxFd writer(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
        EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::inUse);
    }
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.ok()) << wordsOf(held);
    EXPECT_TRUE(held.value()->verify().ok());
    const LinuxFd reader(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_TRUE(held.value()->verify().ok()) << "readers disturb nobody";
    const LinuxFd writer(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    EXPECT_TRUE(writer) << "no lease may be left that holds up writers";
    EXPECT_EQ(faultOf(held.value()->verify()), FaultKind::inUse);
}

TEST_F(InUse, WhateverChangesAHeldFileIsSeen) {
    const auto faultAfter = [this](const std::function<void()>& change) {
        writeFile(path, "contents");
        const auto held = toolbox.hold(path);
        if (!held.ok() || !held.value()->verify().ok()) return std::optional(FaultKind::other);
        change();
        return faultOf(held.value()->verify());
    };
    const std::function<void()> changes[] = {
        [this] { writeFile(path, "other contents"); },
        [this] { std::filesystem::last_write_time(path, {}); },
        [this] {
            writeFile(path + ".new", "contents");
            std::filesystem::rename(path + ".new", path);
        },
        [this] {
            std::filesystem::rename(path, path + ".away");
            std::filesystem::create_symlink(path + ".away", path);
        },
    };
    for (const auto& change : changes) EXPECT_EQ(faultAfter(change), FaultKind::inUse);
    std::filesystem::remove(path);
    EXPECT_EQ(faultAfter([this] { std::filesystem::remove(path); }), FaultKind::notThere);
}

// For another owner's file the system does not say who has it open.
TEST_F(InUse, AnotherOwnersFileMustHaveBeenQuietForFiveSeconds) {
    if (::geteuid() != 0) GTEST_SKIP() << "another owner's file needs root's rights";
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    const OrdinaryUser user;
    clock.time = std::chrono::system_clock::now() + std::chrono::milliseconds(4000);
    EXPECT_EQ(faultOf(toolbox.hold(path)), FaultKind::inUse);
    clock.advance(std::chrono::milliseconds(1100));
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.ok()) << wordsOf(held);
    EXPECT_TRUE(held.value()->verify().ok());
}

TEST(QuietTimes, TheLaterTimeCountsAndOneInTheFutureNeedsASecondLook) {
    SettableClock clock;
    QuietTime quiet{clock};
    const auto stampAt = [&clock](int modified, int changed) {
        const std::int64_t now = std::chrono::system_clock::to_time_t(clock.time);
        return FileStamp{{1, 2}, 3, {now + modified, 0}, {now + changed, 0}};
    };
    EXPECT_TRUE(quiet.look(stampAt(-60, -6)));
    EXPECT_FALSE(quiet.look(stampAt(-60, -3)));
    EXPECT_FALSE(quiet.look(stampAt(-3, -60)));

    FileStamp stamp = stampAt(3600, -60);
    EXPECT_FALSE(quiet.look(stamp));
    clock.advance(std::chrono::milliseconds(4900));
    EXPECT_FALSE(quiet.look(stamp));
    clock.advance(std::chrono::milliseconds(200));
    EXPECT_TRUE(quiet.look(stamp)) << "the moment before the move asks again";
    ++stamp.size;
    EXPECT_FALSE(quiet.look(stamp)) << "it has changed: the five seconds begin anew";
    clock.advance(std::chrono::seconds(5));
    EXPECT_TRUE(quiet.look(stamp));
}

}  // namespace
}  // namespace vantrell::test
