// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/status_report.h"
#include "core/main_window.h"
#include "core/settings_keeper.h"
#include "platform/message_boxes.h"
#include "platform/startup_entry.h"
#include "platform/timers.h"

namespace vantrell {

/// What reading the settings works with; everything outlives it.
struct LoadedSettingsParts {
    ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    SettingsFile& file;
    SettingsKeeper& settings;
    MessageBoxes& boxes;
    StartupEntry& entry;
    Timer& timRun;
};

/// Reads ZEP.cfg and shows what it holds: at start-up, and again after a restore.
class LoadedSettings {
public:
    explicit LoadedSettings(LoadedSettingsParts parts) : p_(parts) {}

    /// A box tells of a file that could not be read whole.
    void read();
    /// The four folders, and what follows where one of them is missing.
    void showFolders();
    /// The minutes field, the check marks, and the state of the start-up entry.
    void showOptions();
    /// All of it once more.
    void reload();

private:
    void reportMissingFolders();
    void showNormal();

    LoadedSettingsParts p_;
    bool areWhole_ = false;
};

}  // namespace vantrell
