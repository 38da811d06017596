// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "task/run_queue.h"

namespace vantrell {

enum class Buttons { ok, yesNo };

/// `dismissed`: a question was closed without an answer (Escape, the close box), so nothing is done. `withdrawn`: the
/// program took the question back.
enum class Answer { no, yes, ok, dismissed, withdrawn };

/// One message box. Texts are UTF-8 with CR LF between lines.
struct Box {
    std::string title;
    std::string text;
    Buttons buttons = Buttons::ok;
    bool defaultIsNo = false;
};

/// The title of boxes that have none of their own.
inline constexpr char kApplicationTitle[] = "Vantrell";

/// Message boxes that hold up the task which asks, but never the window.
class MessageBoxes {
public:
    explicit MessageBoxes(RunQueue& queue) : queue_(queue) {}
    MessageBoxes(const MessageBoxes&) = delete;
    MessageBoxes& operator=(const MessageBoxes&) = delete;
    virtual ~MessageBoxes() = default;

    /// Shows the box; to be awaited for the answer. Destroying the awaited value withdraws it.
    Pending<Answer> ask(const Box& box) {
        return {queue_, [&](Ticket<Answer> ticket) { open(ticket, box); },
                [this](Ticket<Answer> ticket) { close(ticket); }};
    }
    /// Closes an open box; whoever awaits it gets `Answer::withdrawn`.
    void withdraw(Ticket<Answer> ticket) {
        close(ticket);
        queue_.wake(ticket, Answer::withdrawn);
    }
    /// Brings a box that is still open to the front: for an operator who chooses again what it holds up.
    virtual void showAgain(Ticket<Answer> ticket) = 0;
    /// Shows an information box for which nobody waits. While an equal one is open, that one is brought to the front.
    virtual void inform(const Box& box) = 0;
    /// Whether an open box says this to somebody who works with the program at this moment.
    [[nodiscard]] virtual bool isBeingRead(const std::string& text) const = 0;

protected:
    /// Shows the box and wakes `ticket` with the answer, once.
    virtual void open(Ticket<Answer> ticket, const Box& box) = 0;
    virtual void close(Ticket<Answer> ticket) = 0;
    [[nodiscard]] RunQueue& queue() { return queue_; }

private:
    RunQueue& queue_;
};

}  // namespace vantrell
