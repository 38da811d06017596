// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_schedule.h"

#include <gtest/gtest.h>

#include "support/time_zone.h"
#include "support/weekly_bench.h"

namespace vantrell::test {
namespace {

using namespace std::chrono;

SettingsRecord schedule(int day, int hour, int minute, const char* half) {
    SettingsRecord settings;
    setSchedule(settings, day, hour, minute, half, 7);
    return settings;
}

// 2 November 2026 is a Monday.
constexpr sys_days kMonday = 2026y / November / 2;

TEST(WeeklySchedule, ComesOnceInAMinuteAndWithinAllOfIt) {
    const TimeZone zone("UTC");
    const SettingsRecord settings = schedule(1, 7, 30, "PM");
    for (const auto& [first, due] : {std::pair{-1ms, false}, {0ms, true}, {59999ms, true}, {60000ms, false}})
        EXPECT_EQ(WeeklySchedule().takeDue(settings, kMonday + 19h + 30min + first), due) << first.count();
    WeeklySchedule weekly;
    int count = 0;
    for (milliseconds at{0}; at < 1min; at += 25ms) count += weekly.takeDue(settings, kMonday + 19h + 30min + at);
    EXPECT_EQ(count, 1);
}

TEST(WeeklySchedule, IsNotRepeatedWhenClockOrScheduleGoBack) {
    const TimeZone zone("UTC");
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
