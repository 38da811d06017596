// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vantrell {

/// Something that happens outside the program and that the event loop waits for. One event loop watches it; all of it
/// runs on the one thread.
class EventSource {
public:
    /// What the host's event loop waits for (POSIX: a descriptor that becomes readable; Windows: an event).
    using Handle = std::intptr_t;
    /// Nothing will ever come from this source.
    static constexpr Handle kNothing = -1;

    EventSource() = default;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    virtual ~EventSource() = default;

    /// Signalled while `serve` has something to do. Stays the same while it is watched.
    [[nodiscard]] virtual Handle handle() const = 0;
    /// Does what is to be done now, a bounded amount of it. Does nothing when there is nothing to do. May not be called
    /// while it runs.
    virtual void serve() = 0;
};

}  // namespace vantrell
