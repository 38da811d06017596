// SPDX-License-Identifier: MIT
#pragma once

#include "core/ending.h"
#include "core/mode_display.h"
#include "core/program_state.h"
#include "core/settings_keeper.h"
#include "housekeeping/weekly_delete.h"
#include "housekeeping/weekly_delete_entries.h"
#include "housekeeping/weekly_delete_window.h"
#include "platform/clock.h"
#include "platform/timers.h"

namespace vantrell {

/// What the settings window of the weekly delete works with; everything outlives it.
struct WeeklyDialogParts {
    ProgramState& state;
    WeeklyDeleteWindow& window;
    SettingsKeeper& settings;
    ModeDisplay& mode;
    const Clock& clock;
    Timer& timClock;  ///< ticks while the window is open; calls `timClock_Timer`
    WeeklyDelete& weekly;
};

/// Decides what the settings window of the weekly delete does. Processing pauses while it is open.
class WeeklyDeleteDialog final : public WeeklyDeleteEvents, public ScheduleEntry, public Endable {
public:
    explicit WeeklyDeleteDialog(WeeklyDialogParts parts) : p_(parts) {}

    void cmdSched() override;
    void timClock_Timer();
    void okPressed(const WeeklyChoice& choice) override;
    void cancelPressed() override;
    /// Closes the window without saving and leaves processing as it is.
    void abort() override;

    [[nodiscard]] bool isOpen() const { return isOpen_; }

private:
    void WeeklySaveConfig();
    void close();

    WeeklyDialogParts p_;
    bool isOpen_ = false;
};

}  // namespace vantrell
