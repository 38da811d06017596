// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/mode_display.h"
#include "core/program_state.h"
#include "core/settings_file.h"
#include "housekeeping/weekly_delete_window.h"
#include "platform/clock.h"
#include "platform/timers.h"

namespace vantrell {

/// What the settings window of the weekly delete works with; everything outlives it.
struct WeeklyDialogParts {
    ProgramState& state;
    WeeklyDeleteWindow& window;
    SettingsFile& settings;
    ModeDisplay& mode;
    const Clock& clock;
    Timer& timClock;  ///< ticks while the window is open; calls `timClock_Timer`
};

/// Decides what the settings window of the weekly delete does. Processing pauses while it is open.
class WeeklyDeleteDialog final : public WeeklyDeleteEvents {
public:
    /// `clockTick` is the main window's, for the schedule to be shown at once.
    WeeklyDeleteDialog(WeeklyDialogParts parts, std::function<void()> clockTick);

    /// Button "Weekly Auto-Delete Scheduler". Brings the window to the front when it is open already.
    void cmdSched();
    void timClock_Timer();
    void okPressed(const WeeklyChoice& choice) override;
    void cancelPressed() override;
    /// The program ends: the window goes, nothing is kept and processing stays as it is.
    void abort();

    [[nodiscard]] bool isOpen() const { return isOpen_; }

private:
    void WeeklySaveConfig();
    void close();

    WeeklyDialogParts p_;
    std::function<void()> clockTick_;
    bool isOpen_ = false;
};

}  // namespace vantrell
