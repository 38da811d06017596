// SPDX-License-Identifier: MIT
#include <QApplication>

#include "core/data_folder.h"
#include "helpers/OpenedMsg/opened_msg_window.h"
#include "platform/linux/posix_host.h"

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Vantrell"));
    QApplication::setDesktopFileName(QStringLiteral("vantrell-zep"));
    vantrell::OpenedMsgWindow window(vantrell::appFolderBelow(vantrell::PosixHost().profileFolder()));
    window.start();
    return QApplication::exec();
}
