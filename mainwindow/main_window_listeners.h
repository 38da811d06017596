// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/log_entries.h"
#include "housekeeping/backup_entries.h"
#include "housekeeping/weekly_delete_entries.h"
#include "mainwindow/main_window_events.h"
#include "passwords/password_entries.h"

namespace vantrell {

/// Who is told what the operator does in the main window: the rooms' own entries, called without a detour. The window
/// forwards and decides nothing.
struct MainWindowListeners {
    MainWindowEvents& window;
    SettingFieldEvents& fields;
    OptionEntries& options;
    AboutEvents& about;
    PasswordEditorEntry& passwordEditor;
    CurrentPasswordEntry& currentPassword;
    BackupEntries& backups;
    ScheduleEntry& schedule;
    DeleteDoneEntry& deleteDone;
    LogEntries& log;
    HistoryEntry& history;
};

}  // namespace vantrell
