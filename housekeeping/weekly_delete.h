// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "activitylog/status_report.h"
#include "core/ending.h"
#include "core/folder_mounts.h"
#include "core/main_window.h"
#include "core/mode_display.h"
#include "core/program_state.h"
#include "housekeeping/clock_watch.h"
#include "housekeeping/weekly_delete_entries.h"
#include "housekeeping/weekly_schedule.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "platform/timers.h"
#include "task/task_group.h"

namespace vantrell {

/// What the weekly delete works with; everything outlives it.
struct WeeklyDeleteParts {
    const ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    FileToolbox& toolbox;
    EventLoop& loop;
    const Clock& clock;
    ModeDisplay& mode;
    Timer& timDelete;
    FolderMounts& mounts;
};

/// Deletes the files of the Done folder that came there more than the chosen number of days ago: once a week on
/// schedule, or when told to.
class WeeklyDelete final : public DeleteDoneEntry, public Endable {
public:
    explicit WeeklyDelete(WeeklyDeleteParts parts);

    /// To be called often: shows the schedule, and arms `timDelete` when the scheduled minute has come.
    void clockTick();
    /// Begins one deletion; while one is under way, the timer stays armed and tries again.
    void timDelete_Timer();
    /// Deletes at once, on any day and at any time.
    void mnDeleteDone() override;

    /// Deletes the old files at the top level of the folder, whose path ends with the separator.
    Task<void> scandirDel(Path folder);

    [[nodiscard]] bool isIdle() { return tasks_.isIdle(); }
    void abort() override;

private:
    [[nodiscard]] bool mayBegin();
    Task<void> deleteOnce();
    Task<void> deleteFile(Path path, FileDate date);
    [[nodiscard]] std::optional<Message> reasonNotTo(const Path& folder) const;
    void resumeProcessing(unsigned switches);

    WeeklyDeleteParts p_;
    WeeklySchedule schedule_;
    ClockWatch watch_;
    TaskGroup tasks_;
};

}  // namespace vantrell
