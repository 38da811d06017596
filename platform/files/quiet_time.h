// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <map>
#include <utility>

#include "platform/clock.h"
#include "platform/files/file_stamp.h"

namespace vantrell {

/// Whether a file has been left alone long enough, told by its dates alone. For files about which the system does not
/// say who has them open.
class QuietTime {
public:
    explicit QuietTime(const Clock& clock) : clock_(clock) {}

    /// Notes a look at a file, and tells whether the file has been left alone: the later of its two times lies 5 s
    /// back. A time in the future tells nothing; then an earlier look, 5 s ago or longer, must have seen the same
    /// stamp.
    [[nodiscard]] bool look(const FileStamp& stamp);

private:
    struct Look {
        FileStamp stamp;
        std::chrono::nanoseconds first;
    };

    bool noteLook(const FileStamp& stamp);
    bool makeRoom(std::chrono::nanoseconds now);

    const Clock& clock_;
    std::map<std::pair<dev_t, ino_t>, Look> looks_;
};

}  // namespace vantrell
