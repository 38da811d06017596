// SPDX-License-Identifier: MIT
#include "platform/qt/qt_event_loop.h"

#include <QTimer>

namespace vantrell {

QtEventLoop::QtEventLoop(const Clock& clock, FlushService& flush) : EventLoop(clock), flush_(flush) {
    if (flush_.completionHandle() < 0) return;
    completed_ = std::make_unique<QSocketNotifier>(flush_.completionHandle(), QSocketNotifier::Read);
    QObject::connect(completed_.get(), &QSocketNotifier::activated, &context_, [this] { flush_.collect(queue()); });
}

QtEventLoop::~QtEventLoop() = default;

void QtEventLoop::requestTurn() {
    if (turnIsRequested_) return;
    turnIsRequested_ = true;
    QTimer::singleShot(0, &context_, [this] {
        turnIsRequested_ = false;
        queue().runTurn();
    });
}

void QtEventLoop::startTimer(Ticket<> ticket, std::chrono::milliseconds time) {
    QTimer::singleShot(time, &context_, [this, ticket] { queue().wake(ticket); });
}

void QtEventLoop::startFlush(Ticket<int> ticket, NativeFile file) { flush_.start(queue(), ticket, file); }

}  // namespace vantrell
