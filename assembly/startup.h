// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <utility>

#include "mainwindow/main_window_controller.h"
#include "platform/data_files.h"
#include "platform/host.h"

namespace vantrell {

/// What start-up works with besides the controller's parts.
struct StartupParts {
    DataFiles& files;
    InstanceLock& instance;
    MainWindowController& controller;
    Timer& timMax;
    /// The bytes of the empty password file that is put where there is none in a fresh profile.
    std::string_view suppliedPasswordFile;
};

/// The start-up sequence. Errors in a step are ignored and the next step runs.
class Startup {
public:
    Startup(ControllerParts parts, StartupParts more) : p_(std::move(parts)), more_(more) {}

    /// Up to the shown window. False when another instance runs on this data folder and this one is to end at once.
    bool load();
    /// The one tick, about 100 ms later, that shows or hides the window and runs the first pass.
    void timMax_Timer();
    /// Reads the settings file again and shows what it holds, as at start-up.
    void reloadSettings();

private:
    bool takeDataFolder();
    void supplyPasswordFile();
    void readSettings();
    void showLoadedSettings();
    void showFolders();
    void reportMissingFolders();
    void showSettings();
    void showNormal();
    [[nodiscard]] bool threeFoldersAreSet() const;

    ControllerParts p_;
    StartupParts more_;
};

}  // namespace vantrell
