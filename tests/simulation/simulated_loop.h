// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/event_loop.h"
#include "platform/timers.h"
#include "simulation/simulated_kernel.h"

namespace vantrell::test {

/// An event loop in simulated time: flushes end and timers are due when nothing else is left to do.
class SimulatedLoop final : public EventLoop {
public:
    /// Both outlive the loop.
    SimulatedLoop(SimulatedClock& clock, SimulatedKernel& kernel) : EventLoop(clock), clock_(clock), kernel_(kernel) {}

    /// Runs one turn, or ends some flushes. False when only time helps.
    bool turn(Chance& chance) {
        const bool flushFirst = chance.oneIn(3);
        if (flushFirst) kernel_.completeFlushes(chance);
        if (queue().hasWork()) {
            queue().runTurn();
            return true;
        }
        return flushFirst ? queue().hasWork() : kernel_.completeFlushes(chance);
    }
    /// When the next waiting task is due (time since boot); nothing when none waits for time.
    [[nodiscard]] const std::chrono::nanoseconds* nextDue() const {
        return waiting_.empty() ? nullptr : &waiting_.begin()->first;
    }
    /// Wakes who is due.
    void wakeDue() {
        while (!waiting_.empty() && waiting_.begin()->first <= clock_.sinceBoot()) {
            queue().wake(waiting_.begin()->second);
            waiting_.erase(waiting_.begin());
        }
    }

protected:
    void requestTurn() override {}
    void startTimer(Ticket<> ticket, std::chrono::milliseconds time) override {
        waiting_.emplace(clock_.sinceBoot() + time, ticket);
    }

private:
    SimulatedClock& clock_;
    SimulatedKernel& kernel_;
    std::multimap<std::chrono::nanoseconds, Ticket<>> waiting_;
};

}  // namespace vantrell::test
