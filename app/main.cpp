// SPDX-License-Identifier: MIT
#include <QApplication>

#include "app/program.h"
#include "core/frmIcon.h"
#include "platform/linux/signal_source.h"

int main(int argc, char** argv) {
    vantrell::SignalSource endRequests;
    // One name for desktop entry, icon, window class and notifications.
    const QString id = QStringLiteral("vantrell-zep");
    QApplication::setApplicationName(id);
    QApplication::setDesktopFileName(id);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setWindowIcon(vantrell::programIcon());
    vantrell::Program program;
    program.endWhenAsked(endRequests);
    if (!program.start()) return 0;
    return QApplication::exec();
}
