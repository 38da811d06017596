// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "activitylog/activity_log.h"
#include "core/main_window.h"
#include "core/main_window_events.h"
#include "core/mode_display.h"
#include "core/program_state.h"
#include "core/settings_file.h"
#include "core/status_report.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/host.h"
#include "platform/message_boxes.h"
#include "platform/timers.h"
#include "task/task_group.h"
#include "transport/scan_pass.h"

namespace vantrell {

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
};

/// Decides what the main window's buttons, fields and timers do, and how the program closes.
class MainWindowController final : public MainWindowEvents {
public:
    /// `quit` ends the event loop.
    MainWindowController(ControllerParts parts, std::function<void()> quit);

    void startPressed() override;
    void stopPressed() override;
    void exitPressed() override;
    bool folderPressed(FolderKind kind) override;
    void folderChosen(FolderKind kind, const Path& folder) override;
    void includeSubfoldersClicked(bool checked) override;
    void intervalSpun(bool up, const std::string& text) override;
    void intervalEdited(const std::string& text) override;
    void closeBoxPressed() override;
    void minimized() override;
    void viewCurrentLogChosen() override;
    void turnOffLoggingChosen() override;

    /// Runs a scan pass, unless one is under way.
    void timRun_Timer();
    void timCurTime_Timer();

    /// The full closing, for every reason but the close box: tasks first, then settings and log, then the window.
    void closeForGood();

private:
    Task<void> start();
    Task<void> turnOffLogging();
    void switchLogging(bool turnedOff, const char* event);
    void takeInterval(std::int32_t milliseconds);
    Path& settingOf(FolderKind kind);

    ControllerParts p_;
    std::function<void()> quit_;
    TaskGroup passes_;
    TaskGroup startQuestion_;
    TaskGroup loggingQuestion_;
};

}  // namespace vantrell
