// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "activitylog/log_menus.h"
#include "assembly/ending.h"
#include "assembly/loaded_settings.h"
#include "assembly/startup.h"
#include "housekeeping/backup_menus.h"
#include "housekeeping/weekly_delete_dialog.h"
#include "mainwindow/about.h"
#include "mainwindow/main_window_controller.h"
#include "mainwindow/main_window_listeners.h"
#include "mainwindow/option_menus.h"
#include "mainwindow/setting_fields.h"
#include "passwords/current_password.h"
#include "passwords/password_editor_controller.h"
#include "platform/cipher.h"
#include "platform/source_claim.h"
#include "platform/timers.h"

namespace vantrell {

/// What the engine asks of the machine. All of it outlives the engine.
struct Machine {
    const Clock& clock;
    Timers& timers;
    EventLoop& loop;
    Host& host;
    InstanceLock& instance;
    SourceClaim& claim;
    StartupEntry& entry;
    FileToolbox& toolbox;
    DataFiles& files;
    Database& database;
    DatabaseCopier& databaseCopier;
    LineStore& lines;
    CipherFactory makeCipher;
};

/// What people see of the program. All of it outlives the engine.
struct Screen {
    MainWindow& window;
    PasswordWindow& passwordWindow;
    WeeklyDeleteWindow& weeklyWindow;
    MessageBoxes& boxes;
    Tray& tray;
    Notifier& notifier;
    /// Windows of which the engine knows no more than that they close when the program ends.
    std::vector<Endable*> others;
};

/// All of the program that decides: the one place where its pieces are made and handed to each other, with real windows
/// and a real disk or without. Who makes it connects the windows' events to its pieces, then calls `start`.
struct Engine {
    /// `quit` ends the event loop.
    Engine(Machine machine, Screen screen, std::function<void()> quit);
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// False when another instance runs on this data folder: then there is nothing to run.
    bool start();
    /// For the main window.
    [[nodiscard]] MainWindowListeners listeners(HistoryEntry& history);

    Machine machine;
    Screen screen;

    // The pieces. The order is that of dependence: what stands further down uses what stands further up.
    ProgramState state;
    SettingsFile settingsFile;
    SettingsKeeper settings;
    FolderMounts mounts;
    ActivityLog log;
    StatusReport report;
    WindowPlace place;
    Notices notices;
    std::unique_ptr<Timer> timRun;
    std::unique_ptr<Timer> timMax;
    std::unique_ptr<Timer> tmchkTimer;
    std::unique_ptr<Timer> timCurTime;
    std::unique_ptr<Timer> timDelete;
    std::unique_ptr<Timer> timWeeklyClock;
    ModeDisplay mode;
    LoadedSettings loadedSettings;

    PasswordStore passwords;
    ActivePassword activePassword;
    NoActivePassword noActivePassword;
    PasswordEditorController passwordEditor;
    CurrentPassword currentPassword;

    ConfigBackup backup;
    BackupMenus backupMenus;
    WeeklyDelete weekly;
    WeeklyDeleteDialog weeklyDialog;

    FlushNote flushNote;
    Namesakes namesakes;
    ScanPass pass;
    Passes passes;

    Ending ending;
    OptionMenus optionMenus;
    LogMenus logMenus;
    About about;
    SettingFields fields;
    MainWindowController controller;
    Startup startup;

private:
    void connectTimers();
    void clockTick();
    void tickNow();
    void tickEvery(Timer& timer, std::int32_t seenMs) const;
    void modeTick();
};

}  // namespace vantrell
