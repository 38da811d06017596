// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

namespace vantrell::test {

/// A clock that stands still unless it is moved.
class SettableClock final : public Clock {
public:
    SettableClock()
        : SettableClock(std::chrono::sys_days(std::chrono::year(2026) / 11 / 16) + std::chrono::hours(14)) {}
    explicit SettableClock(TimePoint begin) : time(begin) {}

    [[nodiscard]] TimePoint now() const override { return time; }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return boot; }
    /// Lets time pass. Setting `time` alone is what somebody does who sets the clock.
    void advance(std::chrono::nanoseconds passed) {
        time += std::chrono::duration_cast<TimePoint::duration>(passed);
        boot += passed;
    }

    TimePoint time;
    std::chrono::nanoseconds boot = std::chrono::hours(1);
};

}  // namespace vantrell::test
