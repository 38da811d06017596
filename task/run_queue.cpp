// SPDX-License-Identifier: MIT
#include "task/run_queue.h"

#include <exception>
#include <utility>

namespace vantrell {

RunQueue::RunQueue(std::function<void()> requestTurn, SteadyNow now, std::chrono::milliseconds budget)
    : requestTurn_(std::move(requestTurn)), now_(std::move(now)), budget_(budget), turnBegan_(now_()) {}

// The state of a program that nobody has told what to do then is unknown. Ending it at once is safe, since files are
// safe at every moment.
void RunQueue::reportException() const {
    if (!told_) std::terminate();
    told_();
}

RunQueue::Id RunQueue::enlist() {
    waiters_.emplace(++last_, Waiter{});
    return last_;
}

void RunQueue::forget(Id id) { waiters_.erase(id); }

void RunQueue::wakeWith(Id id, std::any value) {
    const auto found = waiters_.find(id);
    if (found == waiters_.end() || found->second.woken) return;
    found->second.woken = true;
    found->second.value = std::move(value);
    if (found->second.task) makeReady(id);
}

bool RunQueue::isWoken(Id id) const {
    const auto found = waiters_.find(id);
    return found != waiters_.end() && found->second.woken;
}

void RunQueue::resumeWhenWoken(Id id, std::coroutine_handle<> waiting) {
    Waiter& waiter = waiters_.at(id);
    waiter.task = waiting;
    if (waiter.woken) makeReady(id);
}

void RunQueue::resumeNobody(Id id) {
    if (const auto found = waiters_.find(id); found != waiters_.end()) found->second.task = {};
}

void RunQueue::makeReady(Id id) {
    const bool wasEmpty = ready_.empty();
    ready_.push_back(id);
    if (wasEmpty) requestTurn_();
}

void RunQueue::runTurn() {
    turnBegan_ = now_();
    while (!ready_.empty()) {
        const Id id = ready_.front();
        ready_.pop_front();
        const auto found = waiters_.find(id);
        if (found != waiters_.end() && found->second.task) std::exchange(found->second.task, {}).resume();
        if (turnIsUsedUp()) break;
    }
    if (!ready_.empty()) requestTurn_();
}

bool RunQueue::turnIsUsedUp() const { return now_() - turnBegan_ >= budget_; }

namespace detail {

PendingNumber::PendingNumber(RunQueue& queue, Cancel cancel)
    : queue_(&queue), id_(queue.enlist()), cancel_(std::move(cancel)) {}

// Somebody else goes on with it. Whoever awaited it is being destroyed, and may be gone when it is woken.
PendingNumber::PendingNumber(PendingNumber&& other) noexcept
    : queue_(other.queue_), id_(std::exchange(other.id_, 0)), cancel_(std::move(other.cancel_)) {
    queue_->resumeNobody(id_);
}

PendingNumber::~PendingNumber() {
    if (id_ == 0) return;
    const bool stillOpen = !queue_->isWoken(id_);
    queue_->forget(id_);
    if (stillOpen && cancel_) cancel_(id_);
}

}  // namespace detail

NextTurn::~NextTurn() {
    if (id_ != 0) queue_->forget(id_);
}

void NextTurn::await_suspend(std::coroutine_handle<> waiting) {
    id_ = queue_->enlist();
    queue_->resumeWhenWoken(id_, waiting);
    queue_->wake(Ticket<>{id_});
}

}  // namespace vantrell
