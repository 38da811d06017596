// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "core/window_place.h"
#include "platform/clock.h"
#include "platform/message_boxes.h"
#include "platform/notifier.h"

namespace vantrell {

/// What keeps the program from doing its work, or what an operator should know of a pass.
enum class Trouble { none, filesRejected, folderGone, folderTaken, folderUnread, diskFails, logNotSaved, noPassword };

/// Notifies an operator who does not look at the window. There is one notification at a time, which is replaced or
/// withdrawn when things change. The same trouble is told again after longer and longer pauses, and it is told as long
/// as it lasts, even when no further pass comes.
class Notices {
public:
    Notices(Notifier& notifier, const Clock& clock, MainWindow& window, WindowPlace& place, const MessageBoxes& boxes);

    enum class Then { goesOn, hasStopped };
    /// How a pass ended, with the words the operator was shown and the number of files it rejected.
    void passEnded(Trouble trouble, const std::string& words, std::uint64_t rejected, Then then);
    /// To be called when the operator has done something: nothing is told until the next pass.
    void operatorActed();
    /// To be called regularly, for example with each tick of the clock.
    void tick();

    /// To be called when a pass asks a question: shows the window again if it is out of sight, and notifies that the
    /// pass waits for an answer. A question that goes on waiting is told again as a trouble is.
    void questionOpened(const Box& box);
    void questionClosed();

private:
    // Longer and longer pauses.
    class Reminder {
    public:
        void begin(Clock::TimePoint now);
        /// Whether the pause is over; the next one is longer then.
        bool takeDue(Clock::TimePoint now);

    private:
        Clock::TimePoint told_{};
        std::chrono::hours pause_{0};
    };

    void tell();
    void tellOfQuestion();
    void settle();

    Notifier& notifier_;
    const Clock& clock_;
    MainWindow& window_;
    WindowPlace& place_;
    const MessageBoxes& boxes_;
    Trouble trouble_ = Trouble::none;
    std::string words_;
    std::uint64_t rejected_ = 0;  // since this trouble began
    std::uint64_t rejectedTold_ = 0;
    Then then_ = Then::goesOn;
    Reminder reminder_;
    std::string question_;  // that waits; empty: none
    bool questionIsTold_ = false;
    Reminder questionReminder_;
};

}  // namespace vantrell
