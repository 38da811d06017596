// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vantrell {

/// Tells whether the wall clock can be trusted for days: it cannot once it has been set by more than a day while the
/// program ran (an empty battery, a wrong time server), since files then look older or younger than they are.
class ClockWatch {
public:
    /// Begins by trusting the wall clock.
    explicit ClockWatch(const Clock& clock) : clock_(clock) { accept(); }

    /// To be called often: a jump counts even when the clock is put right again afterwards.
    void look() {
        if (std::chrono::abs(difference() - accepted_) > kTolerance) hasJumped_ = true;
    }
    [[nodiscard]] bool hasJumped() const { return hasJumped_; }
    /// To be called when a person has checked the date: the wall clock is trusted again.
    void accept() {
        accepted_ = difference();
        hasJumped_ = false;
    }

private:
    static constexpr std::chrono::nanoseconds kTolerance = std::chrono::hours(24);

    [[nodiscard]] std::chrono::nanoseconds difference() const {
        return clock_.now().time_since_epoch() - clock_.sinceBoot();
    }

    const Clock& clock_;
    std::chrono::nanoseconds accepted_{};
    bool hasJumped_ = false;
};

}  // namespace vantrell
