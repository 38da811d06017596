// SPDX-License-Identifier: MIT
#pragma once

#include "platform/message_boxes.h"
#include "task/task.h"

namespace vantrell {

/// Questions that a pass asks, one at a time, and that Stop takes back.
class QuestionDesk {
public:
    explicit QuestionDesk(MessageBoxes& boxes) : boxes_(boxes) {}
    QuestionDesk(const QuestionDesk&) = delete;
    QuestionDesk& operator=(const QuestionDesk&) = delete;

    Task<Answer> ask(Box box) {
        Pending answer = boxes_.ask(box);
        const Open open(open_, answer.id());
        co_return static_cast<Answer>(co_await answer);
    }
    /// The task that waits for an answer gets `Answer::withdrawn`.
    void withdraw() {
        if (open_ != 0) boxes_.withdraw(open_);
    }

private:
    // The number of the open question, for as long as the frame that asks it lives.
    class Open {
    public:
        Open(RunQueue::Id& place, RunQueue::Id id) : place_(place) { place_ = id; }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open() { place_ = 0; }

    private:
        RunQueue::Id& place_;
    };

    MessageBoxes& boxes_;
    RunQueue::Id open_ = 0;
};

}  // namespace vantrell
