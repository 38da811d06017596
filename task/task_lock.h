// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <vector>

#include "task/run_queue.h"
#include "task/task.h"

namespace vantrell {

/// Lets only one task at a time work with something. Tasks get the lock in the order in which they asked for it. A task
/// that is destroyed while it waits for the lock leaves the queue, and one that is destroyed while it has the lock
/// gives it back.
class TaskLock {
public:
    /// Whoever has it holds the lock until it is destroyed.
    class [[nodiscard]] Held {
    public:
        explicit Held(TaskLock* lock) : lock_(lock) {}
        Held(Held&& other) noexcept : lock_(std::exchange(other.lock_, nullptr)) {}
        Held& operator=(Held&&) = delete;
        Held(const Held&) = delete;
        Held& operator=(const Held&) = delete;
        ~Held() {
            if (lock_ != nullptr) lock_->release();
        }

    private:
        TaskLock* lock_;
    };

    explicit TaskLock(RunQueue& queue) : queue_(queue) {}
    TaskLock(const TaskLock&) = delete;
    TaskLock& operator=(const TaskLock&) = delete;

    /// The lock must outlive the task.
    Task<Held> acquire() {
        while (isHeld_) {
            Pending<> released(queue_, [this](Ticket<> ticket) { waiting_.push_back(ticket); });
            co_await released;
        }
        isHeld_ = true;
        co_return Held(this);
    }
    [[nodiscard]] bool isHeld() const { return isHeld_; }

private:
    void release() {
        isHeld_ = false;
        // All waiting tasks are woken, in their order. If only the first one were woken and then destroyed before it
        // runs, nobody would get the lock.
        for (const Ticket<> ticket : std::exchange(waiting_, {})) queue_.wake(ticket);
    }

    RunQueue& queue_;
    bool isHeld_ = false;
    std::vector<Ticket<>> waiting_;
};

}  // namespace vantrell
