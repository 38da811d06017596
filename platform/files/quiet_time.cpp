// SPDX-License-Identifier: MIT
#include "platform/files/quiet_time.h"

#include <algorithm>
#include <functional>
#include <string_view>

namespace vantrell {

namespace {

// More than these wait until older looks are forgotten.
constexpr std::size_t kMostLooks = std::size_t{1} << 20U;
constexpr std::chrono::hours kForgottenAfter{1};

std::size_t markOf(const FileStamp& stamp) {
    std::size_t mark = stamp.size;
    for (const std::int64_t part :
         {stamp.modified.seconds, stamp.modified.nanoseconds, stamp.changed.seconds, stamp.changed.nanoseconds})
        mark = mark * 0x9E3779B97F4A7C15U + static_cast<std::size_t>(part);
    return mark;
}

}  // namespace

std::chrono::nanoseconds QuietTime::look(const FileStamp& stamp, std::chrono::nanoseconds apart) {
    const auto now = clock_.sinceBoot();
    const std::size_t mark = markOf(stamp);
    const auto found = looks_.find(stamp.identity);
    if (found != looks_.end() && found->second.mark == mark)
        return std::max(std::chrono::nanoseconds(0), apart - (now - found->second.first));
    if (found != looks_.end() || makeRoom(now)) looks_.insert_or_assign(stamp.identity, Look{mark, now});
    return apart;
}

bool QuietTime::makeRoom(std::chrono::nanoseconds now) {
    if (looks_.size() < kMostLooks) return true;
    std::erase_if(looks_, [now](const auto& look) { return now - look.second.first > kForgottenAfter; });
    return looks_.size() < kMostLooks;
}

}  // namespace vantrell
