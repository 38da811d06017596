// SPDX-License-Identifier: MIT
#pragma once

#include "core/ending.h"
#include "core/main_window.h"
#include "core/program_state.h"
#include "core/settings_keeper.h"
#include "core/window_place.h"
#include "mainwindow/main_window_events.h"
#include "platform/message_boxes.h"
#include "platform/startup_entry.h"
#include "task/task_group.h"

namespace vantrell {

/// The entries with check marks that mirror settings, the two that start the program with the session, and the rule
/// that ties two of them together: a program that starts hidden must also process by itself.
///
/// While one of their questions is open, further clicks on these entries bring it to the front.
class OptionMenus final : public OptionEntries, public Endable {
public:
    OptionMenus(ProgramState& state, MainWindow& window, SettingsKeeper& settings, MessageBoxes& boxes,
                WindowPlace& place, StartupEntry& entry, RunQueue& queue);

    void mnAddtoStartup() override;
    void mnuRemoveFromStartup() override;
    void startupMenuOpens() override { window_.setStartupEntry(entry_.state()); }
    void mnuStartOnLoad() override;
    void mnmax() override;
    void mnOW() override;

    void abort() override { questions_.abort(); }

private:
    [[nodiscard]] bool ignoresClicks();
    Task<Answer> ask(std::string title, std::string text, bool defaultIsNo = false);
    void inform(std::string title, std::string text);
    /// True while a pass is in progress: a box has said so.
    bool refuseDuringPass();
    // False when the change could not be saved and was taken back.
    bool saveAndShow();
    bool setRunContinually(bool on);
    bool checkRunNormal();
    Task<void> uncheckStartOnLoad();
    Task<void> uncheckRunNormal();
    Task<void> checkOverwrite();

    ProgramState& state_;
    MainWindow& window_;
    SettingsKeeper& settings_;
    MessageBoxes& boxes_;
    WindowPlace& place_;
    StartupEntry& entry_;
    TaskGroup questions_;
    Ticket<Answer> standing_;
};

}  // namespace vantrell
