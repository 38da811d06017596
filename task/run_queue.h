// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <coroutine>
#include <cstdint>
#include <deque>
#include <functional>
#include <unordered_map>

namespace vantrell {

/// The one place from which waiting tasks are run again.
///
/// Whoever waits holds a number. Timers, completed flushes and answered questions only wake a number; the task behind
/// it runs in the next turn, in the order of waking. A number that was forgotten meanwhile wakes nobody, so a request
/// that is still under way when its task is destroyed needs no cancelling.
class RunQueue {
public:
    using Id = std::uint64_t;
    using SteadyClock = std::chrono::steady_clock;

    /// `requestTurn` asks the event loop to call `runTurn` soon; `budget` is how long one turn may last.
    explicit RunQueue(std::function<void()> requestTurn,
                      std::chrono::milliseconds budget = std::chrono::milliseconds(20));
    RunQueue(const RunQueue&) = delete;
    RunQueue& operator=(const RunQueue&) = delete;

    [[nodiscard]] Id enlist();
    void forget(Id id);
    /// The first waking of a number counts, later ones do nothing.
    void wake(Id id, int value = 0);
    [[nodiscard]] bool isWoken(Id id) const;
    /// Whether somebody still holds the number and it has not been woken.
    [[nodiscard]] bool isAwaited(Id id) const { return waiters_.contains(id) && !isWoken(id); }
    [[nodiscard]] int value(Id id) const;
    void resumeWhenWoken(Id id, std::coroutine_handle<> waiting);

    /// Runs woken tasks until none is left or the turn's time is used up, and asks for a further turn in that case.
    void runTurn();
    /// True when the tasks of this turn have had their time together and should let the event loop have its own.
    [[nodiscard]] bool turnIsUsedUp() const;
    [[nodiscard]] bool hasWork() const { return !ready_.empty(); }

private:
    struct Waiter {
        std::coroutine_handle<> task;
        int value = 0;
        bool woken = false;
    };

    void makeReady(Id id);

    std::function<void()> requestTurn_;
    std::chrono::milliseconds budget_;
    SteadyClock::time_point turnBegan_;
    Id last_ = 0;
    std::unordered_map<Id, Waiter> waiters_;
    std::deque<Id> ready_;
};

/// Something that was begun and will wake its number once; to be awaited at once or later. The value is what it was
/// woken with. Destroying it before then forgets the number and calls `cancel`, when one was given.
class [[nodiscard]] Pending {
public:
    using Start = std::function<void(RunQueue::Id)>;
    using Cancel = std::function<void(RunQueue::Id)>;

    Pending(RunQueue& queue, const Start& start, Cancel cancel = {});
    Pending(Pending&& other) noexcept;
    Pending& operator=(Pending&&) = delete;
    Pending(const Pending&) = delete;
    Pending& operator=(const Pending&) = delete;
    ~Pending();

    [[nodiscard]] RunQueue::Id id() const { return id_; }
    [[nodiscard]] bool await_ready() const { return queue_->isWoken(id_); }
    void await_suspend(std::coroutine_handle<> waiting) { queue_->resumeWhenWoken(id_, waiting); }
    int await_resume() const { return queue_->value(id_); }

private:
    RunQueue* queue_;
    RunQueue::Id id_;
    Cancel cancel_;
};

/// Goes back to the queue and is run again behind those who are ready already.
class [[nodiscard]] NextTurn {
public:
    explicit NextTurn(RunQueue& queue) : queue_(&queue) {}
    NextTurn(const NextTurn&) = delete;
    NextTurn& operator=(const NextTurn&) = delete;
    ~NextTurn();

    [[nodiscard]] bool await_ready() const { return false; }
    void await_suspend(std::coroutine_handle<> waiting);
    void await_resume() const {}

private:
    RunQueue* queue_;
    RunQueue::Id id_ = 0;
};

/// Goes back to the event loop when this turn's time is used up, and is free of cost otherwise.
class [[nodiscard]] Breath : public NextTurn {
public:
    explicit Breath(RunQueue& queue) : NextTurn(queue), used_(queue.turnIsUsedUp()) {}
    [[nodiscard]] bool await_ready() const { return !used_; }

private:
    bool used_;
};

}  // namespace vantrell
