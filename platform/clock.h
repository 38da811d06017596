// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vantrell {

/// The wall clock.
class Clock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    [[nodiscard]] virtual TimePoint now() const = 0;
};

}  // namespace vantrell
