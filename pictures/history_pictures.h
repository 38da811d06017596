// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QTableView>
#include <functional>

#include "activitylog/frmHistory.h"
#include "activitylog/frmHistoryInfo.h"
#include "platform/files/posix_file_reading.h"
#include "platform/files/posix_toolbox.h"
#include "platform/linux/linux_kernel.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_event_loop.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

inline void writeLogs(const std::string& folder) {
    std::string log;
    for (int number = 1; number <= 160; ++number) {
        const std::string file = "report " + std::to_string(number) + ".pdf";
        const std::string minute = std::to_string(10 + number % 50);
        log += "11/21/2026 08:" + minute + ":07 AM ";
        log += number % 7 == 0 ? "File /srv/in/" + file + " did not encrypt!\r\n"
                               : "Encryped:  " + file + " - Sucessful: \r\n";
    }
    for (int day = 16; day <= 24; ++day) writeFile(folder + "/202611" + std::to_string(day) + " Activity.Log", log);
}

/// Draws the list of past logs as "history" and one that is read, with something found, as "history-log". `wait` lets
/// the event loop run for so many milliseconds.
inline void drawHistory(const std::function<void(QWidget&, const QString&)>& save,
                        const std::function<void(int)>& wait) {
    const TemporaryFolder folder;
    const Path& logs = folder.path();
    writeLogs(logs);
    LinuxKernel kernel;
    const SystemClock clock;
    QtEventLoop loop(clock);
    PosixToolbox toolbox(loop, kernel, clock);
    const PosixFileReading files{kernel};
    QWidget mainWindow;
    frmHistoryInfo log(logs, files, loop, mainWindow);
    frmHistory list(logs, toolbox, loop, log, mainWindow);
    list.open();
    wait(300);
    auto* grid = list.findChild<QTableView*>();
    Q_EMIT grid->clicked(grid->model()->index(5, 0));
    grid->setCurrentIndex(grid->model()->index(5, 0));
    save(list, QStringLiteral("history"));
    log.openHistory("20261121 Activity.Log");
    list.close();
    wait(300);
    log.findChild<QLineEdit*>()->setText(QStringLiteral("did not encrypt"));
    wait(300);
    save(log, QStringLiteral("history-log"));
}

}  // namespace vantrell::test
