// SPDX-License-Identifier: MIT
#include "platform/qt/qt_event_loop.h"

#include <QTimer>

namespace vantrell {

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

}  // namespace vantrell
