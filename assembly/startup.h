// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/activity_log.h"
#include "assembly/loaded_settings.h"
#include "core/ending.h"
#include "core/window_place.h"
#include "platform/data_files.h"
#include "platform/file_toolbox.h"
#include "platform/host.h"
#include "platform/tray.h"
#include "task/task_group.h"
#include "transport/passes.h"

namespace vantrell {

/// What start-up works with; everything outlives it.
struct StartupParts {
    ProgramState& state;
    MainWindow& window;
    ActivityLog& log;
    SettingsKeeper& settings;
    LoadedSettings& loaded;
    WindowPlace& place;
    Passes& passes;
    Timer& timRun;
    Timer& timMax;
    Host& host;
    InstanceLock& instance;
    Tray& tray;
    MessageBoxes& boxes;
    DataFiles& files;
    FileToolbox& toolbox;
    RunQueue& queue;
};

/// The start-up sequence. Errors in a step are ignored and the next step runs.
class Startup final : public Endable {
public:
    explicit Startup(StartupParts parts) : p_(parts), cleanUp_(p_.queue) {}

    /// Up to the shown window; what an earlier crash has left in the data folder is cleaned up in turns that follow.
    /// False when another instance runs on this data folder and this one is to end at once.
    bool load();
    /// The one tick, about 100 ms later, that shows or hides the window and runs the first pass.
    void timMax_Timer();
    void abort() override { cleanUp_.abort(); }

private:
    [[nodiscard]] bool takeDataFolder();
    void tellOfMissingLock();
    void makeOwnFilesPrivate();
    void supplyPasswordFile();
    void cleanUpDataFolder();
    [[nodiscard]] bool threeFoldersAreSet() const;

    StartupParts p_;
    TaskGroup cleanUp_;
    bool isLocked_ = false;
};

}  // namespace vantrell
