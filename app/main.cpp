// SPDX-License-Identifier: MIT
#include <QApplication>

#include "app/program.h"
#include "platform/linux/signal_source.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_timers.h"

int main(int argc, char** argv) {
    vantrell::SignalSource endRequests;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const vantrell::SystemClock clock{};
    vantrell::QtTimers timers;
    vantrell::Program program(clock, timers);
    program.endWhenAsked(endRequests);
    if (!program.start()) return 0;
    return QApplication::exec();
}
