// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/activity_log.h"
#include "activitylog/log_entries.h"
#include "core/ending.h"
#include "core/main_window.h"
#include "core/settings_keeper.h"
#include "platform/message_boxes.h"
#include "task/task_group.h"

namespace vantrell {

/// Shows and hides the activity box, and turns logging on and off. While the question about it is open, further clicks
/// on that entry bring it to the front.
class LogMenus final : public LogEntries, public Endable {
public:
    /// Everything outlives the menus.
    LogMenus(ProgramState& state, MainWindow& window, ActivityLog& log, SettingsKeeper& settings, MessageBoxes& boxes,
             RunQueue& queue)
        : state_(state), window_(window), log_(log), settings_(settings), boxes_(boxes), question_(queue) {}

    void viewCurrentLogChosen() override { window_.setActivityShown(!window_.isActivityShown()); }
    void turnOffLoggingChosen() override;
    void abort() override { question_.abort(); }

private:
    Task<void> turnOffLogging();
    void switchLogging(bool turnedOff, const Message& event);

    ProgramState& state_;
    MainWindow& window_;
    ActivityLog& log_;
    SettingsKeeper& settings_;
    MessageBoxes& boxes_;
    TaskGroup question_;
    Ticket<Answer> standing_;
};

}  // namespace vantrell
