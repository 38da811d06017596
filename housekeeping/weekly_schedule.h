// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "core/program_state.h"

namespace vantrell {

/// A minute as the clock on the wall shows it, with its date.
using LocalMinute = std::chrono::local_time<std::chrono::minutes>;

/// What the clock on the wall shows at that time, in the time zone of the environment (TZ).
[[nodiscard]] LocalMinute localMinute(std::chrono::system_clock::time_point time);
[[nodiscard]] std::chrono::local_days localDay(std::chrono::system_clock::time_point time);

/// 1 "Monday" to 7 "Sunday".
[[nodiscard]] const char* weekdayName(int day);
[[nodiscard]] inline bool isWeekday(int day) { return day >= 1 && day <= 7; }
/// Ages that a file must exceed to be deleted. Outside of these the days are not set, and nothing is deleted.
inline constexpr int kLeastDaysOld = 7;
inline constexpr int kMostDaysOld = 14;
[[nodiscard]] inline bool daysOldAreSet(const SettingsRecord& settings) {
    return settings.WeeklyDeleteDaysOld >= kLeastDaysOld && settings.WeeklyDeleteDaysOld <= kMostDaysOld;
}

/// The schedule for people: "Scheduled: Monday 7:5 PM  File Create Date > 7". Empty when there is none.
[[nodiscard]] std::string scheduleText(const SettingsRecord& settings);

/// Tells when the weekly delete is due: at any time within the scheduled minute, but once for each minute and date,
/// however often it is asked and however often clocks are set back.
///
/// A minute that daylight saving leaves out on that date is due in the first minute behind the gap. Nothing is made up
/// for when nobody asked during the minute (a machine that was switched off or slept): the next one comes a week later.
class WeeklySchedule {
public:
    /// True once; the next True comes with another minute or date.
    [[nodiscard]] bool takeDue(const SettingsRecord& settings, std::chrono::system_clock::time_point now);

private:
    std::vector<LocalMinute> taken_;  // those of the last date
};

}  // namespace vantrell
