// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <deque>
#include <vector>

#include "platform/message_boxes.h"

namespace vantrell::test {

/// Message boxes that answer as the test said beforehand; without an answer left, a question stays open.
class ScriptedBoxes final : public MessageBoxes {
public:
    using MessageBoxes::MessageBoxes;

    void answerNext(Answer answer) { answers_.push_back(answer); }
    void inform(const Box& box) override { informed.push_back(box); }
    [[nodiscard]] bool isBeingRead(const std::string& text) const override { return text == read; }
    void showAgain(Ticket<Answer> ticket) override { shownAgain += std::count(openIds.begin(), openIds.end(), ticket); }
    /// Answers the question that is open.
    void answerOpen(Answer answer) {
        const auto ticket = openIds.back();
        openIds.pop_back();
        queue().wake(ticket, answer);
    }

    std::vector<Box> asked;
    std::vector<Box> informed;
    std::vector<Ticket<Answer>> openIds;
    std::ptrdiff_t shownAgain = 0;
    std::string read;  ///< what somebody is reading at the moment

protected:
    void open(Ticket<Answer> ticket, const Box& box) override {
        asked.push_back(box);
        if (answers_.empty()) return openIds.push_back(ticket);
        queue().wake(ticket, answers_.front());
        answers_.pop_front();
    }
    void close(Ticket<Answer> ticket) override { std::erase(openIds, ticket); }

private:
    std::deque<Answer> answers_;
};

}  // namespace vantrell::test
