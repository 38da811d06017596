// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>

#include "platform/clock.h"

namespace vantrell {

class SystemClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override { return std::chrono::system_clock::now(); }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override {
        timespec time{};
        // It cannot fail: Linux has had this clock since 2.6.39.
        static_cast<void>(::clock_gettime(CLOCK_BOOTTIME, &time));
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
};

}  // namespace vantrell
