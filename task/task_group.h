// SPDX-License-Identifier: MIT
#pragma once

#include <list>
#include <memory>

#include "task/run_queue.h"
#include "task/task.h"

namespace vantrell {

/// Owner of tasks that nobody awaits. A started task first runs in the next turn of the queue.
class TaskGroup {
public:
    explicit TaskGroup(RunQueue& queue);
    TaskGroup(const TaskGroup&) = delete;
    TaskGroup& operator=(const TaskGroup&) = delete;
    ~TaskGroup();

    void start(Task<void> task);
    /// Aborts all tasks of the group. Not to be called from within one of them.
    void abort();
    /// True when every task that was started has come to its end.
    [[nodiscard]] bool isIdle();

private:
    class Root;

    void removeFinished();

    RunQueue& queue_;
    std::list<std::unique_ptr<Root>> roots_;
};

}  // namespace vantrell
