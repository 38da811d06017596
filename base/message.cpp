// SPDX-License-Identifier: MIT
#include "base/message.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vantrell {

namespace {

constexpr char kMask[] = "<…>";

// The reasons that the host gives for failures. They say what happened, but not to which file.
constexpr std::array<std::string_view, 13> kReasons{
    ": No such file or directory",
    ": Permission denied",
    ": Operation not permitted",
    ": File exists",
    ": No space left on device",
    ": Disk quota exceeded",
    ": Read-only file system",
    ": Input/output error",
    ": File name too long",
    ": Too many open files",
    ": Device or resource busy",
    ": Stale file handle",
    ": Transport endpoint is not connected",
};

}  // namespace

Message::Message(std::string text, std::string masked) : text_(std::move(text)), masked_(std::move(masked)) {}

Message named(std::string_view text) { return {std::string(text), kMask}; }

Message failureWords(std::string_view text) {
    const auto reason =
        std::find_if(kReasons.begin(), kReasons.end(), [&](std::string_view known) { return text.ends_with(known); });
    std::string masked = text.empty() ? std::string() : kMask;
    if (reason != kReasons.end()) masked += *reason;
    return {std::string(text), std::move(masked)};
}

}  // namespace vantrell
