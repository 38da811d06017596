// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/event_source.h"
#include "platform/linux/linux_fd.h"

namespace vantrell {

/// The system's requests to end (SIGTERM, SIGINT, SIGHUP). A signal that was
/// ignored when the program started stays ignored. SIGPIPE, SIGXFSZ and SIGIO are ignored from now on: the calls
/// concerned report the matter themselves.
///
/// To be made first thing in main: threads that libraries start later must inherit the mask. Nothing is undone at the
/// end, so that a second request cannot kill a program that is saving its last words.
class SignalSource final : public EventSource {
public:
    SignalSource();

    /// What is called when requests have come, once for all of them; nothing at first.
    void setAsked(std::function<void()> asked) { asked_ = std::move(asked); }

    [[nodiscard]] Handle handle() const override { return requests_ ? requests_.get() : kNothing; }
    void serve() override;

private:
    LinuxFd requests_;
    std::function<void()> asked_;
};

}  // namespace vantrell
