// SPDX-License-Identifier: MIT
#pragma once

#include <poll.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/event_loop.h"
#include "platform/linux/linux_kernel.h"
#include "platform/linux/system_clock.h"
#include "task/task_group.h"

namespace vantrell::test {

/// An event loop that a test turns by hand. Time stands still unless `advance` moves it; the kernel and its flushes are
/// real.
class HandCrankedLoop final : public EventLoop {
public:
    HandCrankedLoop() : HandCrankedLoop(machineClock()) {}
    explicit HandCrankedLoop(const Clock& clock) : EventLoop(clock) {}

    /// Runs one turn. False when no task was ready and no flush has completed.
    bool turn() {
        collectFlushes(0);
        if (!queue().hasWork()) return false;
        queue().runTurn();
        return true;
    }

    /// Runs turns until `isDone`, and waits for flushes that are under way. False when no task is ready and no flush is
    /// under way any more.
    bool turnUntil(const std::function<bool()>& isDone) {
        while (!isDone()) {
            if (turn()) continue;
            if (!collectFlushes(2000)) return isDone();
        }
        return true;
    }

    /// Runs the task to its end. False when it waits for something that will not come by itself.
    bool run(Task<void> task) {
        TaskGroup group(queue());
        group.start(std::move(task));
        return turnUntil([&group] { return group.isIdle(); });
    }

    /// Runs the task and returns its value; the test fails when the task does not end.
    template <class T>
    T valueOf(Task<T> task) {
        std::optional<T> value;
        if (!run(keep(std::move(task), &value))) throw std::runtime_error("the task waits for something");
        return std::move(*value);
    }

    /// Lets time pass: timers that are due wake their tasks, in order.
    void advance(std::chrono::milliseconds time) {
        now_ += time;
        while (!timers_.empty() && timers_.begin()->first <= now_) {
            queue().wake(timers_.begin()->second);
            timers_.erase(timers_.begin());
        }
    }
    /// Runs turns as long as a task is ready.
    void settle() {
        while (turn()) continue;
    }
    /// Lets time pass in small steps until `isDone`, or until no task waits for time. Returns how much time has passed.
    std::chrono::milliseconds waitUntil(const std::function<bool()>& isDone) {
        constexpr std::chrono::milliseconds kStep{10};
        for (std::chrono::milliseconds waited{0};; waited += kStep) {
            settle();
            if (isDone() || timers_.empty()) return waited;
            advance(kStep);
        }
    }
    [[nodiscard]] bool waitsForTime() const { return !timers_.empty(); }

    /// The kernel whose flushes this loop waits for.
    [[nodiscard]] Kernel& kernel() { return kernel_; }

protected:
    void requestTurn() override {}
    void startTimer(Ticket<> ticket, std::chrono::milliseconds time) override { timers_.emplace(now_ + time, ticket); }

private:
    // The real one, which notes what is under way.
    class WatchedKernel final : public LinuxKernel {
    public:
        void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override {
            LinuxKernel::startFlush(queue, ticket, file);
            if (!queue.isWoken(ticket.number)) underWay.push_back(ticket.number);
        }
        std::vector<RunQueue::Id> underWay;
    };

    static const Clock& machineClock() {
        static const SystemClock clock;
        return clock;
    }
    template <class T>
    static Task<void> keep(Task<T> task, std::optional<T>* value) {
        value->emplace(co_await std::move(task));
    }

    bool collectFlushes(int waitMilliseconds) {
        std::erase_if(kernel_.underWay, [this](RunQueue::Id id) { return !queue().isAwaited(id); });
        if (kernel_.underWay.empty()) return false;
        EventSource& completions = kernel_.flushCompletions(queue());
        pollfd readable{static_cast<int>(completions.handle()), POLLIN, 0};
        if (::poll(&readable, 1, waitMilliseconds) <= 0) return false;
        completions.serve();
        return true;
    }

    WatchedKernel kernel_;
    std::chrono::milliseconds now_{0};
    std::multimap<std::chrono::milliseconds, Ticket<>> timers_;
};

}  // namespace vantrell::test
