// SPDX-License-Identifier: MIT
#include "platform/qt/qt_event_loop.h"

namespace vantrell {

QtEventLoop::QtEventLoop(const Clock& clock) : EventLoop(clock) {
    turn_.setSingleShot(true);
    QObject::connect(&turn_, &QTimer::timeout, &context_, [this] { queue().runTurn(); });
}

void QtEventLoop::requestTurn() {
    if (!turn_.isActive()) turn_.start();
}

void QtEventLoop::startTimer(Ticket<> ticket, std::chrono::milliseconds time) {
    QTimer::singleShot(time, &context_, [this, ticket] { queue().wake(ticket); });
}

}  // namespace vantrell
