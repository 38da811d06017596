// SPDX-License-Identifier: MIT
#include "platform/files/quiet_time.h"

#include <algorithm>

namespace vantrell {

namespace {

constexpr std::chrono::seconds kQuiet{5};
// Files dated in the future are rare; more than this many at once wait until older looks are forgotten.
constexpr std::size_t kMostLooks = 65536;
constexpr std::chrono::hours kForgottenAfter{1};

FileTime now(const Clock& clock) {
    const auto sinceEpoch = clock.now().time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(sinceEpoch);
    return {seconds.count(), std::chrono::nanoseconds(sinceEpoch - seconds).count()};
}

}  // namespace

bool QuietTime::look(const FileStamp& stamp) {
    const FileTime latest = std::max(stamp.modified, stamp.changed);
    FileTime time = now(clock_);
    if (latest > time) return noteLook(stamp);
    time.seconds -= kQuiet.count();
    return latest <= time;
}

bool QuietTime::noteLook(const FileStamp& stamp) {
    const auto time = clock_.sinceBoot();
    const auto key = std::pair(stamp.identity.device, stamp.identity.inode);
    const auto found = looks_.find(key);
    if (found != looks_.end() && found->second.stamp == stamp) return time - found->second.first >= kQuiet;
    if (found != looks_.end() || makeRoom(time)) looks_.insert_or_assign(key, Look{stamp, time});
    return false;
}

bool QuietTime::makeRoom(std::chrono::nanoseconds time) {
    if (looks_.size() < kMostLooks) return true;
    std::erase_if(looks_, [time](const auto& look) { return time - look.second.first > kForgottenAfter; });
    return looks_.size() < kMostLooks;
}

}  // namespace vantrell
