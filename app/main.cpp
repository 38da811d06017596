// SPDX-License-Identifier: MIT
#include <QApplication>

#include "app/program.h"
#include "platform/linux/signal_source.h"

int main(int argc, char** argv) {
    vantrell::SignalSource endRequests;
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    vantrell::Program program;
    program.endWhenAsked(endRequests);
    if (!program.start()) return 0;
    return QApplication::exec();
}
