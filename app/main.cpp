// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QSessionManager>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "app/program.h"
#include "core/command_line.h"
#include "platform/linux/signal_source.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/program_icon.h"
#include "platform/qt/qt_timers.h"
#include "widgets/visible_indicators.h"

namespace {

int say(const vantrell::CommandLineAnswer& answer) {
    std::fputs(answer.text.c_str(), answer.isError ? stderr : stdout);
    return answer.exitStatus;
}

/// While the application is made. Qt warns of every display that it cannot reach, and then ends the process with a core
/// file.
void tellThatThereIsNoDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::fputs("ZEP: there is no display on which its window could be shown.\n", stderr);
        std::_Exit(1);
    }
    if (std::string_view(context.category).starts_with("qt.qpa")) return;
    std::fputs(qPrintable(qFormatLogMessage(type, context, text) + QLatin1Char('\n')), stderr);
}

}  // namespace

int main(int argc, char** argv) {
    if (const auto answer = vantrell::answerToQuestion({argv + 1, argv + argc})) return say(*answer);
    vantrell::SignalSource endRequests;
    // One name for desktop entry, icon, window class and notifications.
    const QString id = QStringLiteral("vantrell-zep");
    QApplication::setApplicationName(id);
    QApplication::setDesktopFileName(id);
    qInstallMessageHandler(tellThatThereIsNoDisplay);
    const QApplication application(argc, argv);
    qInstallMessageHandler(nullptr);
    if (argc > 1) return say(vantrell::refusalOf(argv[1]));  // Qt has taken what it knows
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
