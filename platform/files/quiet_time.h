// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <optional>

#include "platform/clock.h"
#include "platform/files/file_stamp.h"

namespace vantrell {

/// Looks at files about which the system does not say who writes to them. Two equal looks, far enough apart, are all
/// that can be known: nobody has written in between. Time is our own, since a server's may be behind.
class QuietTime {
public:
    explicit QuietTime(const Clock& clock) : clock_(clock) {}

    /// Notes a look, and tells how long it still takes until this look and an earlier equal one lie `apart`: no time
    /// when they do. Nothing when the earlier look differs: somebody writes, and this look is the first one of the next
    /// pass.
    std::optional<std::chrono::nanoseconds> look(const FileStamp& stamp, std::chrono::nanoseconds apart);
    /// We have changed the file's permissions ourselves: what was seen of it before counts for what it is now, unless
    /// somebody has written in between.
    void carryOver(const FileStamp& before, const FileStamp& after);
    /// The pass is over: only looks that differed are kept.
    void forgetSettled();

private:
    struct Look {
        std::size_t mark;  ///< of the stamp: there may be a million of them
        std::chrono::nanoseconds first;
        bool hasDiffered = false;
    };

    bool makeRoom(std::chrono::nanoseconds now);

    const Clock& clock_;
    std::map<FileIdentity, Look> looks_;
};

}  // namespace vantrell
