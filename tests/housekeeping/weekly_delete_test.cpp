// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_delete.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/forwarding_toolbox.h"
#include "support/weekly_bench.h"

namespace vantrell::test {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

const char kHeldBack[] =
    "Weekly Delete is held back: the computer's clock has been set by more than a day. Please check the date, then "
    "choose \"Manually Delete Done Files\" or start the program again.";
const char kNotSet[] = "Weekly Delete: the days old are not set (7 to 14). Nothing is deleted.";

class WeeklyDeleteTest : public ::testing::Test {
protected:
    std::string done(const std::string& name) { return weekly.bench.done(name); }
    Texts left() { return PassBench::names(weekly.settings().DoneFolder); }
    static std::string deleting(const std::string& path) { return "Executing Weekly Delete ...Deleting File: " + path; }
    /// The clock shows a day so many days after that on which the file came.
    void showDaysAfter(const std::string& path, int days) {
        weekly.bench.clock.time = weekly.bench.toolbox.fileDate(path) + std::chrono::days(days);
    }
    /// The clock shows the scheduled minute, at least 8 days after now.
    void showScheduledMinute() {
        const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
        weekly.bench.clock.time = today + 9 * 24h + 19h + 5min;
        const unsigned day = std::chrono::weekday(today + std::chrono::days(9)).iso_encoding();
        weekly.settings().WeeklyDeleteDay = static_cast<std::int16_t>(day);
    }
    WeeklyBench weekly;
};

TEST_F(WeeklyDeleteTest, TakesOldRegularFilesOfTheTopLevelAlone) {
    writeFile(weekly.bench.root / "outside", "kept");
    weekly.bench.root.makeFolder("done/sub");
    for (const char* name : {"b.txt", "a", ".hidden", "sub/deep.txt", "read-only", "bad\xFF\nname"})
        writeFile(done(name), name);
    ASSERT_EQ(::chmod(done("read-only").c_str(), 0444), 0);
    std::filesystem::create_symlink(weekly.bench.root / "outside", done("link"));
    std::filesystem::create_symlink(done("sub"), done("subLink"));
    ASSERT_EQ(::mkfifo(done("fifo").c_str(), 0600), 0);
    const std::string top = weekly.bench.root / "way to done";
    std::filesystem::create_symlink(std::exchange(weekly.settings().DoneFolder, top), top);

    showDaysAfter(done("b.txt"), 7);
    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(weekly.bench.messages(), Texts{});
    showDaysAfter(done("b.txt"), 8);
    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(left(), (Texts{".hidden", "fifo", "link", "sub", "subLink"}));
    EXPECT_TRUE(PassBench::exists(done("sub/deep.txt")));
    EXPECT_EQ(readFile(weekly.bench.root / "outside"), "kept");
    EXPECT_EQ(weekly.bench.messages(), (Texts{deleting(top + "/a"), deleting(top + "/b.txt"),
                                              deleting(top + "/bad\\xFF\\x0Aname"), deleting(top + "/read-only")}));
    EXPECT_EQ(weekly.bench.window.panel1[3], deleting(top + "/read-only"));
}

TEST_F(WeeklyDeleteTest, TakesNothingFromAFolderThatIsAnotherOneToo) {
    writeFile(done("only copy"), "x");
    showDaysAfter(done("only copy"), 20);
    SettingsRecord& settings = weekly.settings();
    for (Path* other : {&settings.SourceFolder, &settings.DestinationFolder, &settings.RejectFolder}) {
        const Path usual = std::exchange(*other, settings.DoneFolder + "/.");
        ASSERT_TRUE(weekly.deleteByHand());
        *other = usual;
        EXPECT_EQ(left(), Texts{"only copy"});
        EXPECT_NE(weekly.bench.messages().at(0).find(" Folder too. Weekly Delete deletes nothing."), std::string::npos);
    }
    for (const char* none : {"", "/none/there"}) {
        settings.DoneFolder = none;
        EXPECT_TRUE(weekly.deleteByHand());
        EXPECT_EQ(weekly.bench.messages(), Texts{});
    }
}

TEST_F(WeeklyDeleteTest, DaysThatAreNotSetDeleteNothingAndAreTold) {
    writeFile(done("a"), "a");
    for (const int days : {0, 6, 15, -8}) {
        weekly.settings().WeeklyDeleteDaysOld = static_cast<std::int16_t>(days);
        showDaysAfter(done("a"), 400);
        ASSERT_TRUE(weekly.deleteByHand());
        EXPECT_EQ(weekly.bench.messages(), Texts{kNotSet});
        showScheduledMinute();
        weekly.bench.clock.time += days * 168h;
        EXPECT_FALSE(weekly.tick());
        EXPECT_FALSE(weekly.tick());
        EXPECT_EQ(weekly.bench.messages(), Texts{kNotSet});
    }
    EXPECT_EQ(left(), Texts{"a"});
}

TEST_F(WeeklyDeleteTest, HoldsBackWhenTheClockHasJumped) {
    writeFile(done("a"), "a");
    weekly.weekly->clockTick();
    showScheduledMinute();
    EXPECT_FALSE(weekly.tick());
    EXPECT_FALSE(weekly.tick());
    EXPECT_EQ(weekly.bench.messages(), Texts{kHeldBack});
    weekly.bench.clock.advance(168h);
    EXPECT_FALSE(weekly.tick()) << "nobody has looked at it yet";
    EXPECT_EQ(weekly.bench.messages(), Texts{kHeldBack});
    EXPECT_EQ(left(), Texts{"a"});

    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(left(), Texts{});
    EXPECT_EQ(weekly.bench.messages(), Texts{deleting(done("a"))});
    weekly.bench.clock.advance(168h);
    EXPECT_TRUE(weekly.tick());

    weekly.bench.clock.advance(168h);
    for (const auto step : {-25h, 25h}) {
        weekly.bench.clock.time += step;
        weekly.weekly->clockTick();
    }
    EXPECT_EQ(weekly.bench.messages(), Texts{kHeldBack}) << "it was wrong for a while, which is remembered";
}

/// A file system that keeps no change of status of its own: it says what it says of the contents.
class ForgetfulDisk final : public KernelBesideLoop {
public:
    using KernelBesideLoop::KernelBesideLoop;
    int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) override {
        const int error = LinuxKernel::statx(folder, path, flags, mask | STATX_MTIME, into);
        if (isForgetful) into.stx_ctime = into.stx_mtime;
        if (isForgetful) into.stx_mask &= ~static_cast<unsigned>(STATX_BTIME);
        return error;
    }
    int openat(int folder, const char* path, int flags, mode_t mode) override {
        if ((flags & O_TMPFILE) == O_TMPFILE) return -EOPNOTSUPP;
        return isFull && (flags & O_CREAT) != 0 ? -ENOSPC : KernelBesideLoop::openat(folder, path, flags, mode);
    }
    bool isForgetful = false, isFull = false;
};

TEST_F(WeeklyDeleteTest, TakesNothingWhereNobodyCanTellWhenItCame) {
    ForgetfulDisk disk(weekly.bench.loop.kernel());
    PosixToolbox toolbox(weekly.bench.loop, disk, weekly.bench.clock);
    weekly.startAnew(toolbox);
    writeFile(done("a"), "a");
    std::filesystem::last_write_time(done("a"), std::filesystem::file_time_type::clock::now() - 24h * 365);
    showDaysAfter(done("a"), 1);
    disk.isForgetful = true;
    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(left(), Texts{"a"}) << "it came yesterday, and nothing of ours stays";
    EXPECT_EQ(weekly.bench.messages(), Texts{"Weekly Delete: the disk of Done Folder " + weekly.settings().DoneFolder +
                                             " does not tell when a file came there. Nothing is deleted."});
    disk.isForgetful = false;
    disk.isFull = true;
    showDaysAfter(done("a"), 8);
    for (const char* type : {"fuseblk", "ext4"}) {
        disk.mountedAs = type;
        toolbox.beginPass({});  // what was known of the disk is forgotten
        ASSERT_TRUE(weekly.deleteByHand());
        EXPECT_EQ(left().empty(), std::string(type) == "ext4") << "cannot be tried out";
    }
}

/// Asks the real toolbox, slowly, and fails to remove when told.
class TroubledFolder final : public ForwardingToolbox {
public:
    using ForwardingToolbox::ForwardingToolbox;
    [[nodiscard]] FileDate fileDate(const Path& path) const override {
        const auto begin = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - begin < 1ms) {
        }
        return path.ends_with(unreadable) ? FileDate() : ForwardingToolbox::fileDate(path);
    }
    Task<Result<>> removeFile(Path path, FileDate date) override {
        if (fault) co_return *fault;
        co_return co_await ForwardingToolbox::removeFile(path, date);
    }
    std::string unreadable = "unreadable";
    std::optional<Fault> fault;
};

class TroubledDeleteTest : public WeeklyDeleteTest {
protected:
    TroubledDeleteTest() {
        for (int i = 100; i < 400; ++i) writeFile(done(std::to_string(i)), "x");
        showDaysAfter(done("399"), 8);
        weekly.startAnew(folder);
    }
    TroubledFolder folder{weekly.bench.toolbox};
};

TEST_F(TroubledDeleteTest, AnAbortLeavesTheRestAndTheTimerAlone) {
    for (int presses = 0; presses < 2; ++presses) {
        weekly.weekly->mnDeleteDone();
        weekly.bench.loop.turn();
    }
    weekly.weekly->abort();
    while (weekly.bench.loop.turn()) continue;
    const std::size_t rest = left().size();
    EXPECT_GT(rest, 0U);
    EXPECT_EQ(weekly.bench.messages().size(), 300 - rest) << "each file that went was told, and told once";
    EXPECT_FALSE(weekly.bench.timRun.isEnabled());
    weekly.bench.state.ClosingForGood = true;
    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(left().size(), rest) << "nothing begins once the program ends";
}

TEST_F(TroubledDeleteTest, TellsWhatCouldNotBeDeletedAndEndsAtAFileWithoutADate) {
    folder.unreadable = "/103";
    folder.fault = Fault{FaultKind::other, "Operation not permitted"};
    ASSERT_TRUE(weekly.deleteByHand());
    EXPECT_EQ(left().size(), 300U);
    const Texts said = weekly.bench.messages();
    ASSERT_EQ(said.size(), 6U);
    EXPECT_EQ(said[1], "Weekly Delete could not delete File: " + done("100") + " - FAILED: Operation not permitted");
    EXPECT_TRUE(weekly.bench.timRun.isEnabled());
}

}  // namespace
}  // namespace vantrell::test
