// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

namespace vantrell::test {

/// A clock that only moves when it is told to.
class SimulatedClock final : public Clock {
public:
    explicit SimulatedClock(TimePoint start) : sinceEpoch_(start.time_since_epoch()) {}

    [[nodiscard]] TimePoint now() const override {
        return TimePoint(std::chrono::duration_cast<TimePoint::duration>(sinceEpoch_));
    }
    [[nodiscard]] std::chrono::nanoseconds sinceBoot() const override { return sinceBoot_; }
    /// The wall clock in nanoseconds, as file systems take it.
    [[nodiscard]] std::chrono::nanoseconds sinceEpoch() const { return sinceEpoch_; }

    /// Time passes.
    void advance(std::chrono::nanoseconds time) {
        sinceEpoch_ += time;
        sinceBoot_ += time;
    }
    /// Somebody sets the wall clock, forwards or back.
    void jump(std::chrono::nanoseconds by) { sinceEpoch_ += by; }

private:
    std::chrono::nanoseconds sinceEpoch_;
    std::chrono::nanoseconds sinceBoot_{std::chrono::hours(1)};
};

}  // namespace vantrell::test
