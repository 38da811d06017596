// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vantrell {

// The time between two passes. The field shows minutes, the settings hold milliseconds; one minute counts as 65535
// milliseconds.

inline constexpr double kMillisecondsPerMinute = 65535;
/// The largest whole number of minutes whose milliseconds fit a signed 32-bit count.
inline constexpr double kMostMinutes = 32768;

/// The interval of the timer in milliseconds: the stored value, or one minute when that is 0 or less.
[[nodiscard]] std::int32_t effectiveIntervalMs(std::int32_t stored);
/// The text that the field shows for a stored value, with at most four decimals after a point.
[[nodiscard]] std::string minutesText(std::int32_t stored);
/// The milliseconds for a text that was typed. Both point and comma are decimal signs. A text that is no number counts
/// as 1 minute, and so does a number below 1; a number above the largest number of minutes counts as that.
[[nodiscard]] std::int32_t intervalFromText(std::string_view text);
/// The milliseconds after one step up or down from the text. A step below 1 minute gives 1 minute, and so does a step
/// above the largest number of minutes.
[[nodiscard]] std::int32_t intervalAfterSpin(std::string_view text, bool up);

}  // namespace vantrell
