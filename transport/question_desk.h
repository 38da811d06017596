// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

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
        Pending<Answer> answer = boxes_.ask(box);
        const Open open(*this, answer.ticket());
        co_return co_await answer;
    }
    /// The task that waits for an answer gets `Answer::withdrawn`.
    void withdraw() {
        if (open_) boxes_.withdraw(*open_);
    }

private:
    // The ticket of the open question, for as long as the frame that asks it lives.
    class Open {
    public:
        Open(QuestionDesk& desk, Ticket<Answer> ticket) : desk_(desk) { desk_.open_ = ticket; }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open() {
            desk_.open_.reset();
            desk_.notices_.questionClosed();
        }

    private:
        QuestionDesk& desk_;
    };

    MessageBoxes& boxes_;
    Notices& notices_;
    std::optional<Ticket<Answer>> open_;
};

}  // namespace vantrell
