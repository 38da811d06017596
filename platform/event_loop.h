// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include "platform/clock.h"
#include "task/run_queue.h"

namespace vantrell {

/// What tasks need of the one event loop. All of it runs on the one thread.
class EventLoop {
public:
    /// The clock tells how long a turn lasts, and outlives the loop.
    explicit EventLoop(const Clock& clock)
        : queue_([this] { requestTurn(); }, [&clock] { return clock.sinceBoot(); }) {}
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;
    virtual ~EventLoop() = default;

    [[nodiscard]] RunQueue& queue() { return queue_; }
    /// To be awaited often in long work: goes back to the event loop when the tasks' time in this turn is used up.
    Breath breathe() { return Breath(queue_); }
    /// Wakes after the given time.
    Pending<> after(std::chrono::milliseconds time) {
        return {queue_, [&](Ticket<> ticket) { startTimer(ticket, time); }};
    }

protected:
    /// Asks for one call of `queue().runTurn()` from the event loop.
    virtual void requestTurn() = 0;
    virtual void startTimer(Ticket<> ticket, std::chrono::milliseconds time) = 0;

private:
    RunQueue queue_;
};

}  // namespace vantrell
