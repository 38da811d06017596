// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QSessionManager>

#include "core/data_folder.h"
#include "helpers/OpenedMsg/opened_msg_window.h"
#include "platform/linux/posix_host.h"

int main(int argc, char** argv) {
    // The windows of both programs have the same name, so that the desktop shows one entry and one icon for them.
    const QString id = QStringLiteral("vantrell-zep");
    QApplication::setApplicationName(id);
    QApplication::setDesktopFileName(id);
    const QApplication application(argc, argv);
    // The session manager must not start it again: what it says is of no use in the next session.
    QObject::connect(&application, &QGuiApplication::saveStateRequest, &application,
                     [](QSessionManager& session) { session.setRestartHint(QSessionManager::RestartNever); });
    vantrell::OpenedMsgWindow window(vantrell::appFolderBelow(vantrell::PosixHost().profileFolder()));
    window.start();
    return QApplication::exec();
}
