// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/status_report.h"
#include "core/active_password.h"
#include "core/folder_mounts.h"
#include "core/mode_display.h"
#include "core/notices.h"
#include "core/settings_keeper.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "platform/timers.h"
#include "transport/flush_note.h"
#include "transport/namesakes.h"

namespace vantrell {

/// What a pass works with; everything outlives it.
struct PassParts {
    ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    ActivityLog& log;
    SettingsKeeper& settings;
    FileToolbox& toolbox;
    MessageBoxes& boxes;
    EventLoop& loop;
    const Clock& clock;
    Timer& timRun;
    ModeDisplay& mode;
    Notices& notices;
    ActivePassword& password;
    NoActivePassword& noPassword;
    FlushNote& flushNote;
    Namesakes& namesakes;
    FolderMounts& mounts;
};

}  // namespace vantrell
