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
enum class Trouble { none, filesRejected, folderGone, folderUnread, diskFails, noPassword };

/// Tells the operator who does not look at the window: one notification at a time, replaced or withdrawn when things
/// change. The same trouble is told again after growing pauses only, and never forgotten: what stands still is told
/// again even when no pass comes.
class Notices {
public:
    Notices(Notifier& notifier, const Clock& clock, MainWindow& window, WindowPlace& place);

    /// How a pass ended, with the words the operator was shown and the number of files it rejected.
    void passEnded(Trouble trouble, const std::string& words, std::uint64_t rejected);
    /// The operator is here and knows: nothing is told until the next pass.
    void operatorActed();
    /// To be called now and then.
    void tick();

    /// A question of a pass: brings a window that is out of sight back, and says that it waits.
    void questionOpened(const Box& box);
    void questionClosed();

private:
    void tell();
    void settle();

    Notifier& notifier_;
    const Clock& clock_;
    MainWindow& window_;
    WindowPlace& place_;
    Trouble trouble_ = Trouble::none;
    std::string words_;
    std::uint64_t rejected_ = 0;  // since this trouble began
    std::uint64_t rejectedTold_ = 0;
    bool questionIsTold_ = false;
    Clock::TimePoint told_{};
    std::chrono::hours pause_{0};
};

}  // namespace vantrell
