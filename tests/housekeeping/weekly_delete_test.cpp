// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_delete.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "housekeeping/weekly_schedule.h"
#include "support/pass_bench.h"
#include "support/time_zone.h"

namespace vantrell::test {
namespace {

using namespace std::chrono;
using Texts = std::vector<std::string>;

const char kHeldBack[] =
    "Weekly Delete is held back: the computer's clock has been set by more than a day. Please check the date, then "
    "choose \"Manually Delete Done Files\" or start the program again.";
const char kNotSet[] = "Weekly Delete: the days old are not set (7 to 14). Nothing is deleted.";

/// A disk on which, when told, something is odd: it keeps no change of status of its own but what it says of the
/// contents, is full, or gives no date of a file, or no file away. Removing takes long on it.
class OddDisk final : public KernelBesideLoop {
public:
    using KernelBesideLoop::KernelBesideLoop;
    int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) override {
        if (isForbidding && std::string_view(path).ends_with("/103")) return EIO;
        const int error = LinuxKernel::statx(folder, path, flags, mask | STATX_MTIME, into);
        if (isForgetful) into.stx_ctime = into.stx_mtime;
        if (isForgetful) into.stx_mask &= ~static_cast<unsigned>(STATX_BTIME);
        return error;
    }
    int openat(int folder, const char* path, int flags, mode_t mode) override {
        if ((flags & O_TMPFILE) == O_TMPFILE) return -EOPNOTSUPP;
        return isFull && (flags & O_CREAT) != 0 ? -ENOSPC : KernelBesideLoop::openat(folder, path, flags, mode);
    }
    int unlinkat(int folder, const char* path, int flags) override {
        const auto begin = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - begin < 1ms) continue;
        return isForbidding && *path != '.' ? EPERM : LinuxKernel::unlinkat(folder, path, flags);
    }
    bool isForgetful = false, isFull = false, isForbidding = false;
};

/// On Monday at 7:05 PM and after 7 days unless a test says otherwise.
class WeeklyDeleteTest : public ::testing::Test {
protected:
    WeeklyDeleteTest() {
        settings.WeeklyDeleteDay = 1;
        settings.WeeklyDeleteHour = settings.WeeklyDeleteDaysOld = 7;
        settings.WeeklyDeleteMinute = 5;
        settings.WeeklyDeleteAmPm = "PM";
    }
    /// One tick of the clock timer, and of the deletion timer when it is armed; True when a deletion ran to its end.
    bool tick() {
        weekly.clockTick();
        if (!timDelete.isEnabled()) return false;
        weekly.timDelete_Timer();
        return finish();
    }
    bool deleteByHand() {
        weekly.mnDeleteDone();
        return finish();
    }
    bool finish() {
        return bench.loop.turnUntil([this] { return weekly.isIdle(); });
    }
    std::string done(const std::string& name) { return bench.done(name); }
    Texts left() { return PassBench::names(settings.DoneFolder); }
    static std::string deleting(const std::string& path) { return "Executing Weekly Delete ...Deleting File: " + path; }
    /// The clock shows a day so many days after that on which the file came.
    void showDaysAfter(const std::string& path, int days) {
        bench.clock.time = toolbox.fileDate(path) + std::chrono::days(days);
    }
    /// The clock shows the scheduled minute, at least 8 days after now.
    void showScheduledMinute() {
        const auto today = std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now());
        bench.clock.time = today + 9 * 24h + 19h + 5min;
        const unsigned day = std::chrono::weekday(today + std::chrono::days(9)).iso_encoding();
        settings.WeeklyDeleteDay = static_cast<std::int16_t>(day);
    }

    PassBench bench;
    SettingsRecord& settings = bench.state.settings;
    OddDisk disk{bench.loop.kernel()};
    PosixToolbox toolbox{bench.loop, disk, bench.clock};
    HandDrivenTimer timDelete;
    WeeklyDelete weekly{{bench.state, bench.window, bench.engine.report, toolbox, bench.loop, bench.clock,
                         bench.engine.mode, timDelete, bench.engine.mounts}};
};

TEST_F(WeeklyDeleteTest, TakesOldRegularFilesOfTheTopLevelAlone) {
    writeFile(bench.root / "outside", "kept");
    bench.root.makeFolder("done/sub");
    for (const char* name : {"b.txt", "a", ".hidden", "sub/deep.txt", "read-only", "bad\xFF\nname"})
        writeFile(done(name), name);
    ASSERT_EQ(::chmod(done("read-only").c_str(), 0444), 0);
    std::filesystem::create_symlink(bench.root / "outside", done("link"));
    std::filesystem::create_symlink(done("sub"), done("subLink"));
    ASSERT_EQ(::mkfifo(done("fifo").c_str(), 0600), 0);
    const std::string top = bench.root / "way to done";
    std::filesystem::create_symlink(std::exchange(settings.DoneFolder, top), top);

    showDaysAfter(done("b.txt"), 7);
    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(bench.messages(), Texts{});
    showDaysAfter(done("b.txt"), 8);
    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(left(), (Texts{".hidden", "fifo", "link", "sub", "subLink"}));
    EXPECT_TRUE(PassBench::exists(done("sub/deep.txt")));
    EXPECT_EQ(readFile(bench.root / "outside"), "kept");
    EXPECT_EQ(bench.messages(), (Texts{deleting(top + "/a"), deleting(top + "/b.txt"),
                                       deleting(top + "/bad\\xFF\\x0Aname"), deleting(top + "/read-only")}));
    EXPECT_EQ(bench.window.panel1[3], deleting(top + "/read-only"));
}

TEST_F(WeeklyDeleteTest, TakesNothingFromAFolderThatIsAnotherOneToo) {
    writeFile(done("only copy"), "x");
    showDaysAfter(done("only copy"), 20);
    for (Path* other : {&settings.SourceFolder, &settings.DestinationFolder, &settings.RejectFolder}) {
        const Path usual = std::exchange(*other, settings.DoneFolder + "/.");
        ASSERT_TRUE(deleteByHand());
        *other = usual;
        EXPECT_EQ(left(), Texts{"only copy"});
        EXPECT_NE(bench.messages().at(0).find(" Folder too. Weekly Delete deletes nothing."), std::string::npos);
    }
    for (const char* none : {"", "/none/there"}) {
        settings.DoneFolder = none;
        EXPECT_TRUE(deleteByHand());
        EXPECT_EQ(bench.messages(), Texts{});
    }
}

TEST_F(WeeklyDeleteTest, DaysThatAreNotSetDeleteNothingAndAreTold) {
    writeFile(done("a"), "a");
    for (const int days : {0, 6, 15, -8}) {
        settings.WeeklyDeleteDaysOld = static_cast<std::int16_t>(days);
        showDaysAfter(done("a"), 400);
        ASSERT_TRUE(deleteByHand());
        EXPECT_EQ(bench.messages(), Texts{kNotSet});
        showScheduledMinute();
        bench.clock.time += days * 168h;
        EXPECT_FALSE(tick());
        EXPECT_FALSE(tick());
        EXPECT_EQ(bench.messages(), Texts{kNotSet});
    }
    EXPECT_EQ(left(), Texts{"a"});
}

TEST_F(WeeklyDeleteTest, HoldsBackWhenTheClockHasJumped) {
    writeFile(done("a"), "a");
    weekly.clockTick();
    showScheduledMinute();
    EXPECT_FALSE(tick());
    EXPECT_FALSE(tick());
    EXPECT_EQ(bench.messages(), Texts{kHeldBack});
    bench.clock.advance(168h);
    EXPECT_FALSE(tick()) << "nobody has looked at it yet";
    EXPECT_EQ(bench.messages(), Texts{kHeldBack});
    EXPECT_EQ(left(), Texts{"a"});

    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(left(), Texts{});
    EXPECT_EQ(bench.messages(), Texts{deleting(done("a"))});
    bench.clock.advance(168h);
    EXPECT_TRUE(tick());

    bench.clock.advance(168h);
    for (const auto step : {-25h, 25h}) {
        bench.clock.time += step;
        weekly.clockTick();
    }
    EXPECT_EQ(bench.messages(), Texts{kHeldBack}) << "it was wrong for a while, which is remembered";
}

TEST_F(WeeklyDeleteTest, TakesNothingWhereNobodyCanTellWhenItCame) {
    writeFile(done("a"), "a");
    std::filesystem::last_write_time(done("a"), std::filesystem::file_time_type::clock::now() - 24h * 365);
    showDaysAfter(done("a"), 1);
    disk.isForgetful = true;
    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(left(), Texts{"a"}) << "it came yesterday, and nothing of ours stays";
    EXPECT_EQ(bench.messages(), Texts{"Weekly Delete: the disk of Done Folder " + settings.DoneFolder +
                                      " does not tell when a file came there. Nothing is deleted."});
    disk.isForgetful = false;
    disk.isFull = true;
    showDaysAfter(done("a"), 8);
    for (const char* type : {"fuseblk", "ext4"}) {
        disk.mountedAs = type;
        toolbox.beginPass({});  // what was known of the disk is forgotten
        ASSERT_TRUE(deleteByHand());
        EXPECT_EQ(left().empty(), std::string(type) == "ext4") << "cannot be tried out";
    }
}

TEST_F(WeeklyDeleteTest, AnAbortLeavesTheRestAndTheTimerAlone) {
    for (int i = 100; i < 400; ++i) writeFile(done(std::to_string(i)), "x");
    showDaysAfter(done("399"), 8);
    for (int presses = 0; presses < 2; ++presses) {
        weekly.mnDeleteDone();
        bench.loop.turn();
    }
    weekly.abort();
    while (bench.loop.turn()) continue;
    const std::size_t rest = left().size();
    EXPECT_GT(rest, 0U);
    EXPECT_EQ(bench.messages().size(), 300 - rest) << "each file that went was told, and told once";
    EXPECT_FALSE(bench.timRun.isEnabled());
    bench.state.ClosingForGood = true;
    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(left().size(), rest) << "nothing begins once the program ends";
}

TEST_F(WeeklyDeleteTest, TellsWhatCouldNotBeDeletedAndEndsAtAFileWithoutADate) {
    for (int i = 100; i < 105; ++i) writeFile(done(std::to_string(i)), "x");
    showDaysAfter(done("104"), 8);
    disk.isForbidding = true;
    ASSERT_TRUE(deleteByHand());
    EXPECT_EQ(left().size(), 5U);
    const Texts said = bench.messages();
    ASSERT_EQ(said.size(), 6U);
    EXPECT_EQ(said[1], "Weekly Delete could not delete File: " + done("100") +
                           " - FAILED: The file cannot be removed: Operation not permitted");
    EXPECT_TRUE(bench.timRun.isEnabled());
}

SettingsRecord schedule(int day, int hour, int minute, const char* half) {
    SettingsRecord settings;
    settings.WeeklyDeleteDay = static_cast<std::int16_t>(day);
    settings.WeeklyDeleteHour = static_cast<std::int16_t>(hour);
    settings.WeeklyDeleteMinute = static_cast<std::int16_t>(minute);
    settings.WeeklyDeleteAmPm = half;
    return settings;
}

// The published changes of 2028: each row gives what is due, in UTC, in the week of a change and in the week after it.
TEST(WeeklySchedule, IsDueOnceWhenClocksSkipOrRepeatItsMinute) {
    const struct {
        const char* zone;
        int day, hour, minute;
        const char* half;
        sys_seconds first, second;
    } rows[] = {
        {"America/New_York", 7, 2, 30, "AM", sys_days(2028y / 3 / 12) + 7h, sys_days(2028y / 3 / 19) + 6h + 30min},
        {"America/New_York", 7, 1, 30, "AM", sys_days(2028y / 11 / 5) + 5h + 30min,
         sys_days(2028y / 11 / 12) + 6h + 30min},
        {"Europe/Berlin", 7, 2, 0, "AM", sys_days(2028y / 3 / 26) + 1h, sys_days(2028y / 4 / 2)},
        {"Australia/Sydney", 7, 2, 59, "AM", sys_days(2028y / 4 / 1) + 15h + 59min,
         sys_days(2028y / 4 / 8) + 16h + 59min},
        {"America/Santiago", 6, 11, 30, "PM", sys_days(2028y / 4 / 2) + 2h + 30min,
         sys_days(2028y / 4 / 9) + 3h + 30min},
        {"America/Santiago", 7, 12, 30, "AM", sys_days(2028y / 9 / 3) + 4h, sys_days(2028y / 9 / 10) + 3h + 30min},
    };
    for (const auto& row : rows) {
        const TimeZone zone(row.zone);
        WeeklySchedule weekly;
        std::vector<sys_seconds> due;
        for (sys_seconds now = row.first - 24h; now < row.second + 24h; now += 30s)
            if (weekly.takeDue(schedule(row.day, row.hour, row.minute, row.half), now)) due.push_back(now);
        EXPECT_EQ(due, (std::vector{row.first, row.second})) << row.zone;
    }
}

TEST(WeeklySchedule, IsNotRepeatedWhenClockOrScheduleGoBack) {
    const TimeZone zone("UTC");
    constexpr sys_days kMonday = 2026y / November / 2;
    WeeklySchedule weekly;
    const SettingsRecord midnight = schedule(1, 12, 0, "AM");
    EXPECT_TRUE(weekly.takeDue(midnight, kMonday));
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday - 1s));
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday));
    EXPECT_TRUE(weekly.takeDue(schedule(1, 12, 1, "AM"), kMonday + 1min)) << "another minute";
    EXPECT_FALSE(weekly.takeDue(midnight, kMonday));
    EXPECT_TRUE(weekly.takeDue(midnight, kMonday + 7 * 24h)) << "another date";
}

TEST(WeeklySchedule, CountsDaysByTheCalendarOfTheZone) {
    const TimeZone zone("Pacific/Apia");  // 30 December 2011, a Friday, did not take place here
    const sys_seconds gap = sys_days(2011y / December / 30) + 10h;
    EXPECT_EQ(localDay(gap - 1s), local_days(2011y / December / 29));
    EXPECT_EQ(localDay(gap), local_days(2011y / December / 31));
    EXPECT_TRUE(WeeklySchedule().takeDue(schedule(5, 3, 0, "PM"), gap));
    EXPECT_FALSE(WeeklySchedule().takeDue(schedule(5, 3, 0, "PM"), gap + 1min));
}

}  // namespace
}  // namespace vantrell::test
