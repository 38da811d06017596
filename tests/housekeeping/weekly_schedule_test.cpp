// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_schedule.h"

#include <gtest/gtest.h>

#include "support/time_zone.h"

namespace vantrell::test {
namespace {

using namespace std::chrono;

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
