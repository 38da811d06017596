// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrell {

// The time between passes: minutes in the field, milliseconds in the settings, 65535 of them to a minute.

inline constexpr double kMillisecondsPerMinute = 65535;
/// The largest whole number of minutes whose milliseconds fit a signed 32-bit count.
inline constexpr double kMostMinutes = 32768;

/// What the timer runs with: the stored value, or one minute when that is 0 or less.
[[nodiscard]] std::int32_t effectiveIntervalMs(std::int32_t stored);
/// What the field shows for a stored value; at most four decimals, the point as decimal sign.
[[nodiscard]] std::string minutesText(std::int32_t stored);
/// The milliseconds for a text that was typed. Point and comma are decimal signs; what is no number, or below 1,
/// counts as 1, and what is above the most that the field can hold as that.
[[nodiscard]] std::int32_t intervalFromText(std::string_view text);
/// One step up or down from the text: below 1 becomes 1, and so does what goes beyond the most.
[[nodiscard]] std::int32_t intervalAfterSpin(std::string_view text, bool up);

}  // namespace vantrell
