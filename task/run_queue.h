// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <chrono>
#include <coroutine>
#include <cstdint>
#include <deque>
#include <functional>
#include <type_traits>
#include <unordered_map>
#include <utility>

namespace vantrell {

/// The number of somebody who waits for a value of type T, or for nothing but to be woken.
template <class T = void>
struct Ticket {
    std::uint64_t number = 0;
    bool operator==(const Ticket&) const = default;
};

/// The one place from which waiting tasks are run again.
///
/// Whoever waits holds a number. Timers, completed flushes and answered questions only wake a number; the task behind
/// it runs in the next turn, in the order of waking. A number that was forgotten meanwhile wakes nobody, so a request
/// that is still under way when its task is destroyed needs no cancelling.
class RunQueue {
public:
    using Id = std::uint64_t;
    /// A clock that nobody can set, from any beginning.
    using SteadyNow = std::function<std::chrono::nanoseconds()>;

    /// `requestTurn` asks the event loop to call `runTurn` soon; `budget` is how long one turn may last.
    RunQueue(std::function<void()> requestTurn, SteadyNow now,
             std::chrono::milliseconds budget = std::chrono::milliseconds(20));
    RunQueue(const RunQueue&) = delete;
    RunQueue& operator=(const RunQueue&) = delete;

    /// `told` is called when a task that nobody awaits ends with an exception, while that is being handled. Without it
    /// the process ends then.
    void onException(std::function<void()> told) { told_ = std::move(told); }
    /// Only to be called in a handler.
    void reportException() const;

    [[nodiscard]] Id enlist();
    void forget(Id id);
    /// The first waking of a number counts, later ones do nothing.
    void wake(Ticket<> ticket) { wakeWith(ticket.number, {}); }
    template <class T>
    void wake(Ticket<T> ticket, T value) {
        wakeWith(ticket.number, std::move(value));
    }
    [[nodiscard]] bool isWoken(Id id) const;
    /// Whether somebody still holds the number and it has not been woken.
    [[nodiscard]] bool isAwaited(Id id) const { return waiters_.contains(id) && !isWoken(id); }
    /// What the number was woken with.
    template <class T>
    [[nodiscard]] T valueOf(Ticket<T> ticket) const {
        return std::any_cast<T>(waiters_.at(ticket.number).value);
    }
    void resumeWhenWoken(Id id, std::coroutine_handle<> waiting);
    /// The number stays, and whoever has waited with it so far is not run any more.
    void resumeNobody(Id id);

    /// Runs woken tasks until none is left or the turn's time is used up, and asks for a further turn in that case.
    void runTurn();
    /// True when the tasks of this turn have had their time together and should let the event loop have its own.
    [[nodiscard]] bool turnIsUsedUp() const;
    [[nodiscard]] bool hasWork() const { return !ready_.empty(); }

private:
    struct Waiter {
        std::coroutine_handle<> task;
        std::any value;
        bool woken = false;
    };

    void wakeWith(Id id, std::any value);
    void makeReady(Id id);

    std::function<void()> told_;
    std::function<void()> requestTurn_;
    SteadyNow now_;
    std::chrono::milliseconds budget_;
    std::chrono::nanoseconds turnBegan_;
    Id last_ = 0;
    std::unordered_map<Id, Waiter> waiters_;
    std::deque<Id> ready_;
};

namespace detail {

// The number that a Pending holds, whatever the type of its value.
class PendingNumber {
public:
    using Cancel = std::function<void(RunQueue::Id)>;

    PendingNumber(RunQueue& queue, Cancel cancel);
    PendingNumber(PendingNumber&& other) noexcept;
    PendingNumber& operator=(PendingNumber&&) = delete;
    PendingNumber(const PendingNumber&) = delete;
    PendingNumber& operator=(const PendingNumber&) = delete;
    ~PendingNumber();

    [[nodiscard]] RunQueue& queue() const { return *queue_; }
    [[nodiscard]] RunQueue::Id get() const { return id_; }

private:
    RunQueue* queue_;
    RunQueue::Id id_;
    Cancel cancel_;
};

}  // namespace detail

/// Something that was begun and will wake its ticket once; to be awaited at once or later. What it is woken with is
/// what awaiting it gives. Destroying it before then forgets the number and calls `cancel`, when one was given.
template <class T = void>
class [[nodiscard]] Pending {
public:
    using Start = std::function<void(Ticket<T>)>;
    using Cancel = std::function<void(Ticket<T>)>;

    Pending(RunQueue& queue, const Start& start, Cancel cancel = {}) : number_(queue, ofNumber(std::move(cancel))) {
        start(ticket());
    }

    [[nodiscard]] Ticket<T> ticket() const { return {number_.get()}; }
    [[nodiscard]] bool await_ready() const { return number_.queue().isWoken(number_.get()); }
    void await_suspend(std::coroutine_handle<> waiting) { number_.queue().resumeWhenWoken(number_.get(), waiting); }
    T await_resume() const {
        if constexpr (!std::is_void_v<T>) return number_.queue().valueOf(ticket());
    }

private:
    static detail::PendingNumber::Cancel ofNumber(Cancel cancel) {
        if (!cancel) return {};
        return [cancel = std::move(cancel)](RunQueue::Id id) { cancel(Ticket<T>{id}); };
    }

    detail::PendingNumber number_;
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
