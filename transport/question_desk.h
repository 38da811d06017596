// SPDX-License-Identifier: MIT
#pragma once

#include "core/notices.h"
#include "platform/message_boxes.h"
#include "task/task.h"

namespace vantrell {

/// Questions that a pass asks, one at a time, and that Stop takes back.
class QuestionDesk {
public:
    QuestionDesk(MessageBoxes& boxes, Notices& notices) : boxes_(boxes), notices_(notices) {}
    QuestionDesk(const QuestionDesk&) = delete;
    QuestionDesk& operator=(const QuestionDesk&) = delete;

    Task<Answer> ask(Box box) {
        notices_.questionOpened(box);
        Pending answer = boxes_.ask(box);
        const Open open(*this, answer.id());
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
        Open(QuestionDesk& desk, RunQueue::Id id) : desk_(desk) { desk_.open_ = id; }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open() {
            desk_.open_ = 0;
            desk_.notices_.questionClosed();
        }

    private:
        QuestionDesk& desk_;
    };

    MessageBoxes& boxes_;
    Notices& notices_;
    RunQueue::Id open_ = 0;
};

}  // namespace vantrell
