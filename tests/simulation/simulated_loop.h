// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/event_loop.h"
#include "platform/timers.h"
#include "simulation/simulated_kernel.h"

namespace vantrell::test {

/// An event loop in simulated time, which stands still but for the time that calls take, and for `passTime`.
class SimulatedLoop final : public EventLoop {
public:
    /// Both outlive the loop.
    SimulatedLoop(SimulatedClock& clock, SimulatedKernel& kernel) : EventLoop(clock), clock_(clock), kernel_(kernel) {}

    /// Runs one turn, or ends some flushes. False when only time helps.
    bool turn(Chance& chance) {
        const bool endedAny = chance.oneIn(3) && kernel_.completeFlushes(chance);
        if (!queue().hasWork()) return endedAny || kernel_.completeFlushes(chance);
        queue().runTurn();
        serveDue();
        return true;
    }
    /// Goes to the moment at which something is due, at most so far, and does what is due then.
    void passTime(std::chrono::nanoseconds most) {
        const std::chrono::nanoseconds now = clock_.sinceBoot();
        std::chrono::nanoseconds next = now + most;
        if (!waiting_.empty()) next = std::min(next, waiting_.begin()->first);
        for (const SimulatedTimer* timer : timers_)
            if (timer->isEnabled() && timer->interval() > kFrequent) next = std::min(next, timer->due);
        clock_.advance(std::max(next - now, std::chrono::nanoseconds(1)));
        serveDue();
    }
    /// Does something later.
    void later(std::chrono::nanoseconds time, std::function<void()> act) {
        waiting_.emplace(clock_.sinceBoot() + time, std::move(act));
    }

    /// A machine under load: of the ticks that come due while something else runs, or while time is passed over, only
    /// the last one comes.
    class SimulatedTimer final : public Timer {
    public:
        explicit SimulatedTimer(SimulatedLoop& loop) : loop_(loop) { loop_.timers_.push_back(this); }
        SimulatedTimer(const SimulatedTimer&) = delete;
        SimulatedTimer& operator=(const SimulatedTimer&) = delete;
        ~SimulatedTimer() override { std::erase(loop_.timers_, this); }
        void setInterval(std::int32_t milliseconds) override {
            interval_ = milliseconds;
            beginPeriod();
        }
        [[nodiscard]] std::int32_t interval() const override { return interval_; }
        void setEnabled(bool enabled) override {
            if (enabled != enabled_) beginPeriod();
            enabled_ = enabled;
        }
        [[nodiscard]] bool isEnabled() const override { return enabled_; }
        void serve() {
            if (!enabled_ || due > loop_.clock_.sinceBoot()) return;
            beginPeriod();
            tick();
        }
        std::chrono::nanoseconds due{};

    private:
        void beginPeriod() { due = loop_.clock_.sinceBoot() + std::chrono::milliseconds(std::max(interval_, 1)); }
        SimulatedLoop& loop_;
        std::int32_t interval_ = 1;
        bool enabled_ = false;
    };

protected:
    void requestTurn() override {}
    void startTimer(Ticket<> ticket, std::chrono::milliseconds time) override {
        later(time, [this, ticket] { queue().wake(ticket); });
    }

private:
    // Timers that only keep displays up to date do not make time go in small steps.
    static constexpr std::int32_t kFrequent = 50;

    void serveDue() {
        while (!waiting_.empty() && waiting_.begin()->first <= clock_.sinceBoot()) {
            const std::function<void()> act = std::move(waiting_.begin()->second);
            waiting_.erase(waiting_.begin());
            act();
        }
        for (SimulatedTimer* timer : std::vector(timers_)) timer->serve();
    }

    SimulatedClock& clock_;
    SimulatedKernel& kernel_;
    std::multimap<std::chrono::nanoseconds, std::function<void()>> waiting_;
    std::vector<SimulatedTimer*> timers_;
};

class SimulatedTimers final : public Timers {
public:
    explicit SimulatedTimers(SimulatedLoop& loop) : loop_(loop) {}
    std::unique_ptr<Timer> create(const std::string&) override {
        return std::make_unique<SimulatedLoop::SimulatedTimer>(loop_);
    }

private:
    SimulatedLoop& loop_;
};

}  // namespace vantrell::test
