// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "activitylog/activity_log.h"
#include "activitylog/status_report.h"
#include "core/main_window.h"
#include "core/main_window_events.h"
#include "core/mode_display.h"
#include "core/program_state.h"
#include "core/settings_file.h"
#include "core/window_place.h"
#include "mainwindow/option_menus.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/host.h"
#include "platform/message_boxes.h"
#include "platform/timers.h"
#include "platform/tray.h"
#include "task/task_group.h"
#include "transport/scan_pass.h"

namespace vantrell {

/// The other windows and the housekeeping, as the controller reaches them: each a plain command.
struct OtherCommands {
    std::function<void()> editPasswords;
    std::function<void()> chooseHistory;
    std::function<void()> backUp;
    std::function<void()> restoreSettingsFromUnload;
    std::function<void()> restoreSettingsFromNormal;
    std::function<void()> restorePasswordsFromUnload;
    std::function<void()> restorePasswordsFromNormal;
    std::function<void()> scheduleWeeklyDelete;
    std::function<void()> deleteDoneNow;
    /// Shows the schedule, and begins the weekly delete when its minute has come.
    std::function<void()> weeklyClockTick;
    /// When the program ends: whatever is at work or open goes, undone where it is not whole.
    std::function<void()> abort;
    /// When the program ends, behind the last save of the settings.
    std::function<void()> backUpOnClose;
};

/// What the controller works with; everything outlives it.
struct ControllerParts {
    ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    ActivityLog& log;
    SettingsFile& settings;
    MessageBoxes& boxes;
    EventLoop& loop;
    const Clock& clock;
    Host& host;
    Timer& timRun;
    ModeDisplay& mode;
    ScanPass& pass;
    ActivePasswordLookup lookUpActivePassword;
    WindowPlace& place;
    Tray& tray;
    StartupEntry& entry;
    OptionMenus& menus;
    Notices& notices;
    OtherCommands others;
};

/// Decides what the main window's buttons, fields and timers do, and how the program closes.
class MainWindowController final : public MainWindowEvents, public TrayEvents {
public:
    /// `quit` ends the event loop.
    MainWindowController(ControllerParts parts, std::function<void()> quit);

    void startPressed() override;
    void stopPressed() override;
    void exitPressed() override;
    bool folderPressed(FolderKind kind) override;
    void folderChosen(FolderKind kind, const Path& folder) override;
    void schedulePressed() override { p_.others.scheduleWeeklyDelete(); }
    void includeSubfoldersClicked(bool checked) override;
    void intervalSpun(bool up, const std::string& text) override;
    void intervalEdited(const std::string& text) override;
    void closeBoxPressed() override;
    void minimized() override;
    void addToStartupChosen() override { p_.menus.mnAddtoStartup(); }
    void removeFromStartupChosen() override { p_.menus.mnuRemoveFromStartup(); }
    void startOnLoadChosen() override { p_.menus.mnuStartOnLoad(); }
    void runNormalChosen() override { p_.menus.mnmax(); }
    void passwordsChosen() override { p_.others.editPasswords(); }
    void backupChosen() override { p_.others.backUp(); }
    void overwriteChosen() override { p_.menus.mnOW(); }
    void deleteDoneChosen() override { p_.others.deleteDoneNow(); }
    void restoreSettingsFromUnloadChosen() override { p_.others.restoreSettingsFromUnload(); }
    void restoreSettingsFromNormalChosen() override { p_.others.restoreSettingsFromNormal(); }
    void restorePasswordsFromUnloadChosen() override { p_.others.restorePasswordsFromUnload(); }
    void restorePasswordsFromNormalChosen() override { p_.others.restorePasswordsFromNormal(); }
    void historyChosen() override { p_.others.chooseHistory(); }
    void viewCurrentLogChosen() override;
    void viewCurrentPasswordChosen() override;
    void turnOffLoggingChosen() override;
    void aboutChosen() override { p_.window.showAbout(aboutFacts()); }
    void systemInfoPressed() override;
    [[nodiscard]] std::string diagnosticsWanted(const std::string& toolkit) override;

    void trayClicked() override { p_.place.show(); }
    void editPreferencesChosen() override { p_.place.restoreWindow(); }
    void trayExitChosen() override { closeForGood(); }
    void trayAvailabilityChanged(bool available) override { p_.place.trayAvailabilityChanged(available); }

    /// Runs a scan pass, unless one is under way.
    void timRun_Timer();
    void timCurTime_Timer();

    /// Writes down settings and log, and nothing else: the session may be about to end, or not after all.
    void saveAll();
    /// The full closing, for every reason but the close box: tasks first, then settings and log, then the window.
    void closeForGood();

private:
    Task<void> start();
    Task<void> turnOffLogging();
    Task<void> viewCurrentPassword();
    void endPass();
    void switchLogging(bool turnedOff, const Message& event);
    void takeInterval(std::int32_t milliseconds);
    Path& settingOf(FolderKind kind);
    void warnOfFolders();
    [[nodiscard]] AboutFacts aboutFacts() const;

    ControllerParts p_;
    std::function<void()> quit_;
    TaskGroup passes_;
    TaskGroup startQuestion_;
    TaskGroup loggingQuestion_;
    TaskGroup passwordLookup_;
};

}  // namespace vantrell
