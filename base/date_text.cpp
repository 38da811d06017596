// SPDX-License-Identifier: MIT
#include "base/date_text.h"

#include <array>
#include <ctime>

namespace vantrell {

namespace {

std::string formatted(WallTime time, const char* pattern) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 128> text{};
    return {text.data(), std::strftime(text.data(), text.size(), pattern, &local)};
}

}  // namespace

std::string generalDateText(WallTime time) { return formatted(time, "%x %X"); }
std::string timeText(WallTime time) { return formatted(time, "%X"); }
std::string dayStamp(WallTime time) { return formatted(time, "%Y%m%d"); }
std::string secondStamp(WallTime time) { return formatted(time, "%Y%m%d %H%M%S"); }

}  // namespace vantrell
