// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include "platform/event_loop.h"

namespace vantrell {

/// Qt's event loop. The run queue is drained by one 0 ms timer: resuming tasks straight from notifiers would let them
/// outrank everything else.
class QtEventLoop final : public EventLoop {
public:
    explicit QtEventLoop(const Clock& clock);

protected:
    void requestTurn() override;
    void startTimer(Ticket<> ticket, std::chrono::milliseconds time) override;

private:
    QObject context_;  // its destruction ends the timers that still run
    QTimer turn_;
};

}  // namespace vantrell
