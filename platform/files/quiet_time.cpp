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

std::optional<std::chrono::nanoseconds> QuietTime::look(const FileStamp& stamp, std::chrono::nanoseconds apart) {
    const auto now = clock_.sinceBoot();
    const std::size_t mark = markOf(stamp);
    const auto found = looks_.find(stamp.identity);
    if (found == looks_.end()) {
        if (makeRoom(now)) looks_.emplace(stamp.identity, Look{mark, now});
        return apart;
    }
    if (found->second.mark == mark) return std::max(std::chrono::nanoseconds(0), apart - (now - found->second.first));
    found->second = {mark, now, true};
    return std::nullopt;
}

void QuietTime::carryOver(const FileStamp& before, const FileStamp& after) {
    const bool isWritten = before.size != after.size || before.modified != after.modified;
    const auto found = isWritten ? looks_.end() : looks_.find(before.identity);
    if (found != looks_.end() && found->second.mark == markOf(before)) found->second.mark = markOf(after);
}

void QuietTime::forgetSettled() {
    std::erase_if(looks_, [](const auto& look) { return !look.second.hasDiffered; });
    for (auto& [file, look] : looks_) look.hasDiffered = false;
}

bool QuietTime::makeRoom(std::chrono::nanoseconds now) {
    if (looks_.size() < kMostLooks) return true;
    std::erase_if(looks_, [now](const auto& look) { return now - look.second.first > kForgottenAfter; });
    return looks_.size() < kMostLooks;
}

}  // namespace vantrell
