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
    UniqueFd openForWriting() const { return UniqueFd(::open(path.c_str(), O_WRONLY | O_CLOEXEC)); }
    void setModified(std::chrono::seconds fromNow) const {
        const auto time = std::chrono::system_clock::to_time_t(clock.wall + fromNow);
        const timespec times[2] = {{time, 0}, {time, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
    }

    std::string path;
};

TEST_F(InUse, AFileThatIsOpenForWritingIsInUseUntilItIsClosed) {
    {
        const UniqueFd writer = openForWriting();
        EXPECT_EQ(toolbox.hold(path).fault.kind, FaultKind::inUse);
    }
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.file) << held.fault.text;
    EXPECT_FALSE(held.file->verify());
    const UniqueFd reader(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    EXPECT_FALSE(held.file->verify()) << "readers disturb nobody";
    const UniqueFd writer(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    EXPECT_TRUE(writer) << "no lease may be left that holds up writers";
    EXPECT_EQ(held.file->verify().kind, FaultKind::inUse);
}

TEST_F(InUse, AHeldFileGivesItsBytes) {
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.file);
    EXPECT_EQ(held.file->size(), 8U);
    std::byte bytes[32];
    std::size_t got = 0;
    EXPECT_FALSE(held.file->read(bytes, got));
    EXPECT_EQ(std::string(reinterpret_cast<char*>(bytes), got), "contents");
    EXPECT_FALSE(held.file->read(bytes, got));
    EXPECT_EQ(got, 0U);
}

TEST_F(InUse, WhateverChangesAHeldFileIsSeen) {
    const auto faultAfter = [this](const std::function<void()>& change) {
        writeFile(path, "contents");
        const auto held = toolbox.hold(path);
        if (!held.file || held.file->verify()) return FaultKind::other;
        change();
        return held.file->verify().kind;
    };
    EXPECT_EQ(faultAfter([this] { writeFile(path, "other contents"); }), FaultKind::inUse);
    EXPECT_EQ(faultAfter([this] { setModified(std::chrono::seconds(-100)); }), FaultKind::inUse);
    EXPECT_EQ(faultAfter([this] {
                  writeFile(path + ".new", "contents");
                  std::filesystem::rename(path + ".new", path);
              }),
              FaultKind::inUse);
    EXPECT_EQ(faultAfter([this] {
                  std::filesystem::rename(path, path + ".away");
                  std::filesystem::create_symlink(path + ".away", path);
              }),
              FaultKind::inUse);
    std::filesystem::remove(path);
    EXPECT_EQ(faultAfter([this] { std::filesystem::remove(path); }), FaultKind::notThere);
}

// For another owner's file the system does not say who has it open.
TEST_F(InUse, AnotherOwnersFileMustHaveBeenQuietForFiveSeconds) {
    if (::geteuid() != 0) GTEST_SKIP() << "another owner's file needs root's rights";
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    const OrdinaryUser user;
    clock.wall = std::chrono::system_clock::now() + std::chrono::milliseconds(4000);
    EXPECT_EQ(toolbox.hold(path).fault.kind, FaultKind::inUse);
    clock.advance(std::chrono::milliseconds(1100));
    const auto held = toolbox.hold(path);
    ASSERT_TRUE(held.file) << held.fault.text;
    EXPECT_FALSE(held.file->verify());
}

class QuietTimes : public testing::Test {
public:
    [[nodiscard]] FileStamp stampAt(std::chrono::seconds modified, std::chrono::seconds changed) const {
        const auto now = std::chrono::duration_cast<std::chrono::seconds>(clock.wall.time_since_epoch());
        return {{1, 2}, 3, {(now + modified).count(), 0}, {(now + changed).count(), 0}};
    }
    SettableClock clock;
    QuietTime quiet{clock, [this] { return clock.steady; }};
};

TEST_F(QuietTimes, TheLaterTimeCounts) {
    using std::chrono::seconds;
    EXPECT_TRUE(quiet.isQuiet(stampAt(seconds(-60), seconds(-6))));
    EXPECT_FALSE(quiet.isQuiet(stampAt(seconds(-60), seconds(-3))));
    EXPECT_FALSE(quiet.isQuiet(stampAt(seconds(-3), seconds(-60))));
}

TEST_F(QuietTimes, ATimeInTheFutureNeedsASecondLookFiveSecondsLater) {
    FileStamp stamp = stampAt(std::chrono::hours(1), std::chrono::seconds(-60));
    EXPECT_FALSE(quiet.isQuiet(stamp));
    clock.advance(std::chrono::milliseconds(4900));
    EXPECT_FALSE(quiet.isQuiet(stamp));
    clock.advance(std::chrono::milliseconds(200));
    EXPECT_TRUE(quiet.isQuiet(stamp));
    EXPECT_TRUE(quiet.isQuiet(stamp)) << "the moment before the move asks again";
    ++stamp.size;
    EXPECT_FALSE(quiet.isQuiet(stamp)) << "it has changed: the five seconds begin anew";
    clock.advance(std::chrono::seconds(5));
    EXPECT_TRUE(quiet.isQuiet(stamp));
}

}  // namespace
}  // namespace vantrell::test
