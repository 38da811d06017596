// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "activitylog/activity_log.h"
#include "core/ending.h"
#include "core/main_window.h"
#include "core/notices.h"
#include "core/settings_keeper.h"
#include "housekeeping/config_backup.h"
#include "platform/host.h"
#include "platform/timers.h"
#include "platform/tray.h"

namespace vantrell {

/// What the ending works with; everything outlives it.
struct EndingParts {
    ProgramState& state;
    SettingsFile& file;
    SettingsKeeper& settings;
    ActivityLog& log;
    ConfigBackup& backup;
    Timer& timRun;
    Tray& tray;
    Notices& notices;
    MainWindow& window;
    Host& host;
};

/// Ends the program, once, whoever asks for it and how often. The order is what keeps files and settings whole:
/// whatever is at work or open goes first, which undoes what is not whole; then settings and log are saved; then the
/// backup takes what was saved; the window goes last.
class Ending final : public ProgramEnd {
public:
    /// `quit` ends the event loop.
    Ending(EndingParts parts, std::function<void()> quit) : p_(parts), quit_(std::move(quit)) {}

    /// What goes first, in this order. All of it outlives the ending, or the event loop.
    void endsFirst(std::vector<Endable*> atWork) { atWork_ = std::move(atWork); }

    void saveAll() override;
    void closeForGood() override;

private:
    EndingParts p_;
    std::function<void()> quit_;
    std::vector<Endable*> atWork_;
};

}  // namespace vantrell
