// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "activitylog/frmHistory.h"
#include "activitylog/frmHistoryInfo.h"
#include "app/window_keeper.h"
#include "assembly/engine.h"
#include "housekeeping/frmweeklyDelete.h"
#include "mainwindow/frmMain.h"
#include "passwords/frmEDPasswords.h"
#include "platform/desktop/xdg_startup_entry.h"
#include "platform/files/posix_data_files.h"
#include "platform/files/posix_file_reading.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "platform/linux/linux_kernel.h"
#include "platform/linux/posix_host.h"
#include "platform/linux/signal_source.h"
#include "platform/linux/socket_claim.h"
#include "platform/linux/unix_show_listener.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_event_watch.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/qt/qt_notifier.h"
#include "platform/qt/qt_session_end.h"
#include "platform/qt/qt_tray.h"
#include "platform/sqlite/sqlite_copier.h"
#include "platform/sqlite/sqlite_database.h"
#include "widgets/description_tips.h"

namespace vantrell {

/// The engine with its windows, on this machine. Needs a QApplication.
class Program {
public:
    /// Time comes from outside and outlives the program, so that a week can be tried out in a minute.
    Program(const Clock& clock, Timers& timers);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /// False when another instance runs on this data folder: then there is nothing to run.
    bool start();
    void endWhenAsked(SignalSource& requests);

    [[nodiscard]] frmMain& window() { return window_; }
    [[nodiscard]] const Engine& engine() const { return engine_; }

private:
    [[nodiscard]] Machine machine(const Clock& clock, Timers& timers);
    [[nodiscard]] Screen screen();
    void hearShowRequests();

    // The order is that of dependence: what stands further down uses what stands further up.
    QtEventLoop loop_;
    LinuxKernel kernel_;
    QtEventWatch flushesCompleted_;
    PosixHost host_;
    const Path dataFolder_;
    PosixInstanceLock instance_;
    SocketClaim claim_;
    PosixToolbox toolbox_;
    PosixDataFiles files_;
    XdgStartupEntry entry_;
    SqliteDatabase database_;
    SqliteCopier databaseCopier_;
    SpilledLines lines_;
    WindowKeeper windowKeeper_;
    DescriptionTips tips_;
    frmMain window_;
    frmEDPasswords passwordWindow_;
    frmweeklyDelete weeklyWindow_;
    PosixFileReading logReading_;
    frmHistoryInfo historyText_;
    frmHistory history_;
    QtTray tray_;
    QtNotifier notifier_;
    QtMessageBoxes boxes_;
    Engine engine_;
    const MainWindowListeners listeners_;
    QtSessionEnd sessionEnd_;
    std::unique_ptr<QtEventWatch> endRequested_;
    UnixShowListener showRequests_;
    std::unique_ptr<QtEventWatch> showRequested_;
};

}  // namespace vantrell
