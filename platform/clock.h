// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vantrell {

/// The time of day, and the time that has really passed.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// The wall clock, which people and programs set.
    [[nodiscard]] virtual TimePoint now() const = 0;
    /// Time since the machine was started, the time that it slept included. Nobody can set it.
    [[nodiscard]] virtual std::chrono::nanoseconds sinceBoot() const = 0;
};

}  // namespace vantrell
