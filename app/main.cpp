// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QSessionManager>

#include "app/program.h"
#include "platform/linux/signal_source.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/program_icon.h"
#include "platform/qt/qt_timers.h"
#include "widgets/visible_indicators.h"

int main(int argc, char** argv) {
    vantrell::SignalSource endRequests;
    // One name for desktop entry, icon, window class and notifications.
    const QString id = QStringLiteral("vantrell-zep");
    QApplication::setApplicationName(id);
    QApplication::setDesktopFileName(id);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(vantrell::programIcon());
    vantrell::VisibleIndicators::install();
    const vantrell::SystemClock clock{};
    vantrell::QtTimers timers;
    vantrell::Program program(clock, timers);
    program.endWhenAsked(endRequests);
    // Whether the program starts with the session is the start-up entry's business; started by both it would start
    // twice.
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application,
                     [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); });
    if (!program.start()) return 0;
    return QApplication::exec();
}
