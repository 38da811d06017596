// SPDX-License-Identifier: MIT
#include "task/task_group.h"

#include <utility>

namespace vantrell {

// The outermost coroutine of a task: begins in the queue's next turn, and notes its end.
class TaskGroup::Root {
public:
    struct promise_type {
        Root get_return_object() { return Root{std::coroutine_handle<promise_type>::from_promise(*this)}; }
        std::suspend_never initial_suspend() noexcept { return {}; }
        std::suspend_always final_suspend() noexcept { return {}; }
        void return_void() noexcept {}
        void unhandled_exception() noexcept { std::terminate(); }
    };

    static Root drive(RunQueue& queue, Task<void> task) {
        co_await NextTurn(queue);
        try {
            co_await std::move(task);
        } catch (...) {
            queue.reportException();
        }
    }

    explicit Root(std::coroutine_handle<promise_type> frame) : frame_(frame) {}
    Root(Root&& other) noexcept : frame_(std::exchange(other.frame_, {})) {}
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;
    Root& operator=(Root&&) = delete;
    ~Root() {
        if (frame_) frame_.destroy();
    }
    [[nodiscard]] bool isDone() const { return frame_.done(); }

private:
    std::coroutine_handle<promise_type> frame_;
};

TaskGroup::TaskGroup(RunQueue& queue) : queue_(queue) {}
TaskGroup::~TaskGroup() { abort(); }

void TaskGroup::start(Task<void> task) {
    removeFinished();
    roots_.push_back(std::make_unique<Root>(Root::drive(queue_, std::move(task))));
}

void TaskGroup::abort() { roots_.clear(); }

bool TaskGroup::isIdle() {
    removeFinished();
    return roots_.empty();
}

void TaskGroup::removeFinished() {
    roots_.remove_if([](const std::unique_ptr<Root>& root) { return root->isDone(); });
}

}  // namespace vantrell
