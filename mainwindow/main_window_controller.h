// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "activitylog/status_report.h"
#include "core/ending.h"
#include "core/main_window.h"
#include "core/mode_display.h"
#include "core/notices.h"
#include "core/program_state.h"
#include "core/window_place.h"
#include "mainwindow/main_window_events.h"
#include "platform/clock.h"
#include "platform/message_boxes.h"
#include "platform/tray.h"
#include "task/task_group.h"
#include "transport/passes.h"

namespace vantrell {

/// What the controller works with; everything outlives it.
struct ControllerParts {
    ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    MessageBoxes& boxes;
    RunQueue& queue;
    const Clock& clock;
    ModeDisplay& mode;
    Passes& passes;
    WindowPlace& place;
    Notices& notices;
    ProgramEnd& end;
    /// Brings clock and mode up to date.
    std::function<void()> refresh;
};

/// Decides how processing is started and stopped, and where the main window goes.
class MainWindowController final : public MainWindowEvents, public TrayEvents, public Endable {
public:
    explicit MainWindowController(ControllerParts parts) : p_(parts), startQuestion_(parts.queue) {}

    void startPressed() override;
    void stopPressed() override;
    void exitPressed() override { p_.end.closeForGood(); }
    void closeBoxPressed() override;
    void minimized() override { p_.place.hide(); }
    void appeared() override { p_.refresh(); }

    void trayClicked() override { p_.place.show(); }
    void editPreferencesChosen() override { p_.place.restoreWindow(); }
    void trayExitChosen() override { p_.end.closeForGood(); }
    void trayAvailabilityChanged(bool available) override { p_.place.trayAvailabilityChanged(available); }

    void abort() override { startQuestion_.abort(); }

private:
    Task<void> start();

    ControllerParts p_;
    TaskGroup startQuestion_;
};

}  // namespace vantrell
