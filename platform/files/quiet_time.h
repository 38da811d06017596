// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>

#include "platform/clock.h"
#include "platform/files/file_stamp.h"

namespace vantrell {

/// Looks at files about which the system does not say who writes to them. Two equal looks, far enough apart, are all
/// that can be known: nobody has written in between. Time is our own, since a server's may be behind.
class QuietTime {
public:
    explicit QuietTime(const Clock& clock) : clock_(clock) {}

    /// Notes a look, and tells how long it still takes until this look and an earlier equal one lie `apart`; nothing
    /// more when they do.
    std::chrono::nanoseconds look(const FileStamp& stamp, std::chrono::nanoseconds apart);
    /// What was seen of the file need not be kept any more.
    void forget(const FileIdentity& file) { looks_.erase(file); }

private:
    struct Look {
        std::size_t mark;  ///< of the stamp: there may be a million of them
        std::chrono::nanoseconds first;
    };

    bool makeRoom(std::chrono::nanoseconds now);

    const Clock& clock_;
    std::map<FileIdentity, Look> looks_;
};

}  // namespace vantrell
