// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_schedule.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <optional>

namespace vantrell {

namespace {

using std::chrono::minutes;

constexpr int kHalfDay = 12;

// On the 24-hour clock.
int scheduledHour(const SettingsRecord& settings) {
    const int hour = settings.WeeklyDeleteHour;
    if (settings.WeeklyDeleteAmPm == "AM") return hour == kHalfDay ? 0 : hour;
    return hour == kHalfDay ? kHalfDay : hour + kHalfDay;
}

bool isScheduled(const SettingsRecord& settings, LocalMinute minute) {
    const auto day = std::chrono::floor<std::chrono::days>(minute);
    if (std::chrono::weekday(day).iso_encoding() != static_cast<unsigned>(settings.WeeklyDeleteDay)) return false;
    const std::chrono::hh_mm_ss time(minute - day);
    return time.hours().count() == scheduledHour(settings) && time.minutes().count() == settings.WeeklyDeleteMinute;
}

// The scheduled minute that is now, or that was left out between the minute before and now.
std::optional<LocalMinute> scheduledMinute(const SettingsRecord& settings, std::chrono::system_clock::time_point now) {
    const LocalMinute last = localMinute(now);
    for (LocalMinute minute = last; minute == last || minute > localMinute(now - minutes(1)); minute -= minutes(1)) {
        if (isScheduled(settings, minute)) return minute;
    }
    return std::nullopt;
}

}  // namespace

LocalMinute localMinute(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    constexpr int kFirstYear = 1900;  // tm_year counts from here
    const std::chrono::year_month_day date{std::chrono::year(local.tm_year + kFirstYear),
                                           std::chrono::month(static_cast<unsigned>(local.tm_mon + 1)),
                                           std::chrono::day(static_cast<unsigned>(local.tm_mday))};
    return std::chrono::local_days(date) + std::chrono::hours(local.tm_hour) + minutes(local.tm_min);
}

std::chrono::local_days localDay(std::chrono::system_clock::time_point time) {
    return std::chrono::floor<std::chrono::days>(localMinute(time));
}

const char* weekdayName(int day) {
    constexpr std::array kNames{"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
    return kNames.at(static_cast<std::size_t>(day) - 1);
}

std::string scheduleText(const SettingsRecord& settings) {
    if (!isWeekday(settings.WeeklyDeleteDay)) return {};
    return std::string("Scheduled: ") + weekdayName(settings.WeeklyDeleteDay) + " " +
           std::to_string(settings.WeeklyDeleteHour) + ":" + std::to_string(settings.WeeklyDeleteMinute) + " " +
           settings.WeeklyDeleteAmPm + "  File Create Date > " + std::to_string(settings.WeeklyDeleteDaysOld);
}

bool WeeklySchedule::takeDue(const SettingsRecord& settings, std::chrono::system_clock::time_point now) {
    if (!isWeekday(settings.WeeklyDeleteDay)) return false;
    const auto due = scheduledMinute(settings, now);
    if (!due || std::find(taken_.begin(), taken_.end(), *due) != taken_.end()) return false;
    const auto day = std::chrono::floor<std::chrono::days>(*due);
    std::erase_if(taken_, [day](LocalMinute minute) { return std::chrono::floor<std::chrono::days>(minute) != day; });
    taken_.push_back(*due);
    return true;
}

}  // namespace vantrell
