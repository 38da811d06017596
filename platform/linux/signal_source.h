// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/unique_fd.h"

namespace vantrell {

/// The system's requests to end (SIGTERM, SIGINT, SIGHUP), as a descriptor for the event loop. A signal that was
/// ignored when the program started stays ignored. SIGPIPE, SIGXFSZ and SIGIO are ignored from now on: the calls
/// concerned report the matter themselves.
///
/// To be made first thing in main: threads that libraries start later must inherit the mask. Nothing is undone at the
/// end, so that a second request cannot kill a program that is saving its last words.
class SignalSource {
public:
    SignalSource();
    SignalSource(const SignalSource&) = delete;
    SignalSource& operator=(const SignalSource&) = delete;

    /// Becomes readable when a request has come; -1 when none can come this way.
    [[nodiscard]] int descriptor() const { return requests_.get(); }
    /// Takes all requests that have come; False when there was none.
    [[nodiscard]] bool takeRequest();

private:
    UniqueFd requests_;
};

}  // namespace vantrell
