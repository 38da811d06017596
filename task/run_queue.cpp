// SPDX-License-Identifier: MIT
#include "task/run_queue.h"

#include <utility>

namespace vantrell {

RunQueue::RunQueue(std::function<void()> requestTurn, std::chrono::milliseconds budget)
    : requestTurn_(std::move(requestTurn)), budget_(budget), turnBegan_(SteadyClock::now()) {}

RunQueue::Id RunQueue::enlist() {
    waiters_.emplace(++last_, Waiter{});
    return last_;
}

void RunQueue::forget(Id id) { waiters_.erase(id); }

void RunQueue::wake(Id id, int value) {
    const auto found = waiters_.find(id);
    if (found == waiters_.end() || found->second.woken) return;
    found->second.woken = true;
    found->second.value = value;
    if (found->second.task) makeReady(id);
}

bool RunQueue::isWoken(Id id) const {
    const auto found = waiters_.find(id);
    return found != waiters_.end() && found->second.woken;
}

int RunQueue::value(Id id) const {
    const auto found = waiters_.find(id);
    return found == waiters_.end() ? 0 : found->second.value;
}

void RunQueue::resumeWhenWoken(Id id, std::coroutine_handle<> waiting) {
    Waiter& waiter = waiters_.at(id);
    waiter.task = waiting;
    if (waiter.woken) makeReady(id);
}

void RunQueue::makeReady(Id id) {
    const bool wasEmpty = ready_.empty();
    ready_.push_back(id);
    if (wasEmpty) requestTurn_();
}

void RunQueue::runTurn() {
    turnBegan_ = SteadyClock::now();
    while (!ready_.empty()) {
        const Id id = ready_.front();
        ready_.pop_front();
        const auto found = waiters_.find(id);
        if (found != waiters_.end() && found->second.task) std::exchange(found->second.task, {}).resume();
        if (turnIsUsedUp()) break;
    }
    if (!ready_.empty()) requestTurn_();
}

bool RunQueue::turnIsUsedUp() const { return SteadyClock::now() - turnBegan_ >= budget_; }

Pending::Pending(RunQueue& queue, const Start& start, Cancel cancel)
    : queue_(&queue), id_(queue.enlist()), cancel_(std::move(cancel)) {
    start(id_);
}

Pending::Pending(Pending&& other) noexcept
    : queue_(other.queue_), id_(std::exchange(other.id_, 0)), cancel_(std::move(other.cancel_)) {}

Pending::~Pending() {
    if (id_ == 0) return;
    const bool stillOpen = !queue_->isWoken(id_);
    queue_->forget(id_);
    if (stillOpen && cancel_) cancel_(id_);
}

NextTurn::~NextTurn() {
    if (id_ != 0) queue_->forget(id_);
}

void NextTurn::await_suspend(std::coroutine_handle<> waiting) {
    id_ = queue_->enlist();
    queue_->resumeWhenWoken(id_, waiting);
    queue_->wake(id_);
}

}  // namespace vantrell
