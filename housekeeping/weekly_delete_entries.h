// SPDX-License-Identifier: MIT
#pragma once

namespace vantrell {

/// The button "Weekly Auto-Delete Scheduler".
class ScheduleEntry {
public:
    ScheduleEntry() = default;
    ScheduleEntry(const ScheduleEntry&) = delete;
    ScheduleEntry& operator=(const ScheduleEntry&) = delete;
    virtual ~ScheduleEntry() = default;

    /// Opens the settings window of the weekly delete, or brings it to the front while it is open.
    virtual void cmdSched() = 0;
};

/// The menu entry "Manually Delete Done Files".
class DeleteDoneEntry {
public:
    DeleteDoneEntry() = default;
    DeleteDoneEntry(const DeleteDoneEntry&) = delete;
    DeleteDoneEntry& operator=(const DeleteDoneEntry&) = delete;
    virtual ~DeleteDoneEntry() = default;

    virtual void mnDeleteDone() = 0;
};

}  // namespace vantrell
