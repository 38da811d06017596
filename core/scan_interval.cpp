// SPDX-License-Identifier: MIT
#include "core/scan_interval.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace vantrell {

namespace {

double minutesFrom(std::string_view text) {
    std::string plain(text);
    std::replace(plain.begin(), plain.end(), ',', '.');
    const std::size_t first = plain.find_first_not_of(" \t+");
    const std::size_t last = plain.find_last_not_of(" \t");
    if (first == std::string::npos) return 0;
    double value = 0;
    const char* const end = plain.data() + last + 1;
    const auto [stop, error] = std::from_chars(plain.data() + first, end, value);
    if (error == std::errc::result_out_of_range) return plain[first] == '-' ? 0 : kMostMinutes;
    return error == std::errc() && stop == end && !std::isnan(value) ? value : 0;
}

std::int32_t toMilliseconds(double minutes) {
    return static_cast<std::int32_t>(std::nearbyint(minutes * kMillisecondsPerMinute));
}

}  // namespace

std::int32_t effectiveIntervalMs(std::int32_t stored) { return stored > 0 ? stored : toMilliseconds(1); }

std::string minutesText(std::int32_t stored) {
    std::array<char, 32> digits{};
    const auto [end, error] =
        std::to_chars(digits.data(), digits.data() + digits.size(),
                      effectiveIntervalMs(stored) / kMillisecondsPerMinute, std::chars_format::fixed, 4);
    std::string text(digits.data(), error == std::errc() ? end : digits.data());
    text.erase(text.find_last_not_of('0') + 1);
    if (!text.empty() && text.back() == '.') text.pop_back();
    return text;
}

std::int32_t intervalFromText(std::string_view text) {
    return toMilliseconds(std::clamp(minutesFrom(text), 1.0, kMostMinutes));
}

std::int32_t intervalAfterSpin(std::string_view text, bool up) {
    const double minutes = minutesFrom(text) + (up ? 1 : -1);
    return toMilliseconds(minutes < 1 || minutes > kMostMinutes ? 1 : minutes);
}

}  // namespace vantrell
