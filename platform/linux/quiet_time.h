// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <utility>

#include "platform/clock.h"
#include "platform/linux/file_stamp.h"

namespace vantrell {

/// Whether a file has been left alone long enough, told by its dates alone. For files about which the system does not
/// say who has them open.
class QuietTime {
public:
    using SteadyClock = std::chrono::steady_clock;
    using SteadyNow = std::function<SteadyClock::time_point()>;

    QuietTime(const Clock& clock, SteadyNow steadyNow) : clock_(clock), steadyNow_(std::move(steadyNow)) {}

    /// True when the later of the two times lies 5 s back. A time in the future tells nothing: then the file must
    /// have been seen with this same stamp 5 s ago or earlier.
    [[nodiscard]] bool isQuiet(const FileStamp& stamp);

private:
    struct Look {
        FileStamp stamp;
        SteadyClock::time_point first;
    };

    [[nodiscard]] bool wasSeenLongAgo(const FileStamp& stamp);
    [[nodiscard]] bool hasRoom(SteadyClock::time_point now);

    const Clock& clock_;
    SteadyNow steadyNow_;
    std::map<std::pair<dev_t, ino_t>, Look> looks_;
};

}  // namespace vantrell
