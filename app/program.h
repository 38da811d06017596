// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "activitylog/activity_log.h"
#include "activitylog/frmHistory.h"
#include "activitylog/frmHistoryInfo.h"
#include "activitylog/status_report.h"
#include "assembly/startup.h"
#include "core/mode_display.h"
#include "core/notices.h"
#include "core/program_state.h"
#include "core/settings_file.h"
#include "housekeeping/backup_menus.h"
#include "housekeeping/config_backup.h"
#include "housekeeping/frmweeklyDelete.h"
#include "housekeeping/weekly_delete.h"
#include "housekeeping/weekly_delete_dialog.h"
#include "mainwindow/frmMain.h"
#include "mainwindow/main_window_controller.h"
#include "passwords/frmEDPasswords.h"
#include "passwords/password_editor_controller.h"
#include "passwords/password_store.h"
#include "platform/clock.h"
#include "platform/data_files.h"
#include "platform/desktop/xdg_startup_entry.h"
#include "platform/files/posix_file_reading.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "platform/linux/linux_kernel.h"
#include "platform/linux/posix_host.h"
#include "platform/linux/signal_source.h"
#include "platform/linux/unix_show_listener.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_event_watch.h"
#include "platform/qt/qt_message_boxes.h"
#include "platform/qt/qt_notifier.h"
#include "platform/qt/qt_session_end.h"
#include "platform/qt/qt_tray.h"
#include "platform/sqlite/sqlite_copier.h"
#include "platform/sqlite/sqlite_database.h"
#include "platform/timers.h"
#include "task/task_group.h"
#include "transport/scan_pass.h"

namespace vantrell {

/// All pieces of the program, made and handed to each other. Needs a QApplication.
class Program {
public:
    /// These come from outside and outlive the program, so that a week can be tried out in a minute, and a disk that
    /// fails without one.
    Program(const Clock& clock, Timers& timers, DataFiles& files);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /// False when another instance runs on this data folder: then there is nothing to run.
    bool start();
    void endWhenAsked(SignalSource& requests);

    [[nodiscard]] frmMain& window() { return window_; }
    [[nodiscard]] const ProgramState& state() const { return state_; }

private:
    PassParts passParts();
    ControllerParts controllerParts();
    ActivePasswordLookup passwordLookup();
    StartupParts startupParts();
    OtherCommands otherCommands();
    void abortOthers();
    void setEvents();
    void hearShowRequests();

    // The order is that of dependence: what stands further down uses what stands further up.
    ProgramState state_;
    QtEventLoop loop_;
    LinuxKernel kernel_;
    QtEventWatch flushesCompleted_;
    Timers& timers_;
    const Clock& clock_;
    DataFiles& files_;
    PosixHost host_;
    PosixInstanceLock instance_;
    PosixToolbox toolbox_;
    XdgStartupEntry entry_;
    SpilledLines lines_;
    frmMain window_;
    frmEDPasswords passwordWindow_;
    frmweeklyDelete weeklyWindow_;
    QtTray tray_;
    QtNotifier notifier_;
    WindowPlace place_;
    Notices notices_;
    QtMessageBoxes boxes_;
    SqliteDatabase database_;
    PasswordStore passwords_;
    PasswordEditorController passwordEditor_;
    SettingsFile settings_;
    SqliteCopier databaseCopier_;
    ConfigBackup backup_;
    ActivityLog log_;
    StatusReport report_;
    std::unique_ptr<Timer> timRun_;
    std::unique_ptr<Timer> timMax_;
    std::unique_ptr<Timer> tmchkTimer_;
    std::unique_ptr<Timer> timCurTime_;
    std::unique_ptr<Timer> timDelete_;
    std::unique_ptr<Timer> timWeeklyClock_;
    ModeDisplay mode_;
    WeeklyDelete weekly_;
    WeeklyDeleteDialog weeklyDialog_;
    BackupMenus backupMenus_;
    PosixFileReading logReading_;
    frmHistoryInfo historyText_;
    frmHistory history_;
    ScanPass pass_;
    OptionMenus menus_;
    MainWindowController controller_;
    Startup startup_;
    TaskGroup cleanUp_;
    QtSessionEnd sessionEnd_;
    std::unique_ptr<QtEventWatch> endRequested_;
    UnixShowListener showRequests_;
    std::unique_ptr<QtEventWatch> showRequested_;
};

}  // namespace vantrell
