// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <memory>

#include "platform/event_loop.h"
#include "platform/flush_service.h"

namespace vantrell {

/// Qt's event loop. The run queue is drained by one 0 ms timer: resuming tasks straight from notifiers would let them
/// outrank everything else.
class QtEventLoop final : public EventLoop {
public:
    QtEventLoop(const Clock& clock, FlushService& flush);
    ~QtEventLoop() override;

protected:
    void requestTurn() override;
    void startTimer(Ticket<> ticket, std::chrono::milliseconds time) override;
    void startFlush(Ticket<int> ticket, NativeFile file) override;

private:
    FlushService& flush_;
    QObject context_;  // its destruction ends the timers that still run
    std::unique_ptr<QSocketNotifier> completed_;
    bool turnIsRequested_ = false;
};

}  // namespace vantrell
