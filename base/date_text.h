// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace vantrell {

using WallTime = std::chrono::system_clock::time_point;

// All in local time.

/// For people: the locale's short date, a blank, the locale's long time (strftime %x %X).
[[nodiscard]] std::string generalDateText(WallTime time);
/// For people: the locale's long time (strftime %X).
[[nodiscard]] std::string timeText(WallTime time);
/// For file names, whatever the locale: "yyyymmdd".
[[nodiscard]] std::string dayStamp(WallTime time);
/// For file names, whatever the locale: "yyyymmdd hhmmss".
[[nodiscard]] std::string secondStamp(WallTime time);

}  // namespace vantrell
