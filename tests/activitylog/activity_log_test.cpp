// SPDX-License-Identifier: MIT
#include "activitylog/activity_log.h"

#include <gtest/gtest.h>

#include "base/date_text.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "platform/linux/linux_kernel.h"
#include "rig/hand_cranked_loop.h"
#include "rig/temporary_folder.h"
#include "support/doubles.h"
#include "support/file_size_limit.h"

namespace vantrell::test {
namespace {

class ActivityLogTest : public ::testing::Test {
protected:
    ActivityLogTest() {
        ::setenv("TZ", "UTC", 1);
        state_.AppFolder = folder_.path();
        folder_.makeFolder("Daily Activity Logs");
    }
    std::string at(const std::string& message) const { return generalDateText(clock_.time) + " " + message + "\r\n"; }
    std::string file(const std::string& day) const {
        return folder_ / ("Daily Activity Logs/" + day + " Activity.Log");
    }

    TemporaryFolder folder_;
    ProgramState state_;
    RecordingWindow window_;
    LinuxKernel kernel_;
    const Path folderOfLines_ = folder_.path();
    SpilledLines lines_{kernel_, folderOfLines_, folderOfLines_};
    PosixDataFiles disk_{kernel_};
    SettableClock clock_;
    ActivityLog log_{state_, lines_, window_, disk_, clock_};
};

TEST_F(ActivityLogTest, AStartMendsTodaysFileAndTheNewestEarlierOneAlone) {
    const std::string torn = "whole\r\ntorn";
    for (const char* name : {"20261114", "20261115", "20261116", "20261117", "2026111x", "my notes"})
        writeFile(file(name), torn);
    HandCrankedLoop loop;
    PosixToolbox toolbox(loop, loop.kernel(), clock_);
    EXPECT_TRUE(loop.run(log_.mendTornEnds(toolbox)));
    for (const char* name : {"20261115", "20261116"}) EXPECT_EQ(readFile(file(name)), "whole\r\n") << name;
    for (const char* name : {"20261114", "20261117", "2026111x", "my notes"})
        EXPECT_EQ(readFile(file(name)), torn) << name;
}

TEST_F(ActivityLogTest, PutsLinesSavedAfterMidnightIntoTheNewDay) {
    clock_.time =
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 16) + std::chrono::hours(24) - std::chrono::seconds(1);
    log_.logEvent("first");
    log_.writetofile();
    const std::string first = at("first");
    log_.logEvent("second");
    const std::string second = at("second");
    clock_.time += std::chrono::seconds(2);
    log_.logEvent("third");
    log_.writetofile();
    EXPECT_EQ(readFile(file("20261116")), first);
    EXPECT_EQ(readFile(file("20261117")), second + at("third"));
}

TEST_F(ActivityLogTest, SavesEachLineOnceWithTheNextSaveThatSucceedsAndSaysSoOnce) {
    writeFile(file("20261116"), "whole\r\ntorn lin");
    std::string expected = "whole\r\n";
    {
        // Within the second piece of what is to be saved.
        const FileSizeLimit full(100'000);
        for (int i = 0; i < 1000; ++i) {
            log_.logEvent(named(std::to_string(i) + std::string(200, 'x')));
            expected += at(std::to_string(i) + std::string(200, 'x'));
            if (i >= 998) log_.writetofile();
        }
    }
    EXPECT_EQ(window_.panel1.size(), 1U);
    log_.writetofile();
    EXPECT_TRUE(readFile(file("20261116")) == expected);
    EXPECT_EQ(lines_.size(), 1000U) << "the failure itself is not logged";
    // No link is followed out of the folder.
    std::filesystem::rename(file("20261116"), folder_ / "other");
    std::filesystem::create_symlink(folder_ / "other", file("20261116"));
    log_.logEvent("third");
    log_.writetofile();
    EXPECT_TRUE(readFile(folder_ / "other") == expected);
    EXPECT_EQ(window_.panel1.size(), 2U) << "a new failure is shown again";
}

TEST_F(ActivityLogTest, WritesTheLinesOfThePauseWhenLoggingIsOnAgain) {
    state_.settings.LoggingTurnedOff = true;
    log_.logEvent("while off");
    log_.saveWhenOn();
    log_.saveForGood();
    EXPECT_FALSE(std::filesystem::exists(file("20261116")));
    state_.settings.LoggingTurnedOff = false;
    log_.logEvent("on again");
    log_.saveWhenOn();
    EXPECT_EQ(readFile(file("20261116")), "11/16/26 14:00:00 while off\r\n11/16/26 14:00:00 on again\r\n");
}

}  // namespace
}  // namespace vantrell::test
