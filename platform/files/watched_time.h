// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vantrell {

/// How long the wall clock has run evenly, as far as we have watched it. A file that was written before the clock was
/// set looks older than it is, and by that time at most it is known to be that old.
class WatchedTime {
public:
    explicit WatchedTime(const Clock& clock) : clock_(clock), since_(clock.sinceBoot()), difference_(difference()) {}

    /// Time without a jump, up to now.
    [[nodiscard]] std::chrono::nanoseconds evenTime() {
        const auto before = difference_;
        difference_ = difference();
        if (std::chrono::abs(difference_ - before) > kTolerance) since_ = clock_.sinceBoot();
        return clock_.sinceBoot() - since_;
    }

private:
    // The clock is also corrected little by little.
    static constexpr std::chrono::nanoseconds kTolerance = std::chrono::milliseconds(500);

    [[nodiscard]] std::chrono::nanoseconds difference() const {
        return clock_.now().time_since_epoch() - clock_.sinceBoot();
    }

    const Clock& clock_;
    std::chrono::nanoseconds since_;
    std::chrono::nanoseconds difference_;
};

}  // namespace vantrell
