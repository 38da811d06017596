// SPDX-License-Identifier: MIT
#pragma once

#include "core/main_window.h"
#include "core/mode_display.h"
#include "core/settings_keeper.h"
#include "mainwindow/main_window_events.h"
#include "platform/message_boxes.h"
#include "platform/timers.h"
#include "transport/passes.h"

namespace vantrell {

/// What the fields work with; everything outlives them.
struct SettingFieldParts {
    ProgramState& state;
    MainWindow& window;
    SettingsKeeper& settings;
    MessageBoxes& boxes;
    Timer& timRun;
    ModeDisplay& mode;
    Passes& passes;
    FileToolbox& toolbox;
    FolderMounts& mounts;
};

/// Decides what the four folders, the check box for sub-folders and the minutes field do. What is changed is saved at
/// once.
class SettingFields final : public SettingFieldEvents {
public:
    explicit SettingFields(SettingFieldParts parts) : p_(parts) {}

    bool folderPressed(FolderKind kind) override;
    void folderChosen(FolderKind kind, const Path& folder) override;
    void folderTakenBack(FolderKind kind, const Path& lost) override { (void)setFolder(kind, lost); }
    void includeSubfoldersClicked(bool checked) override;
    void intervalSpun(bool up, const std::string& text) override;
    void intervalEdited(const std::string& text) override;

private:
    void emptyFolder(FolderKind kind);
    /// False when it could not be saved.
    bool setFolder(FolderKind kind, const Path& folder);
    void showFolder(FolderKind kind);
    void takeInterval(std::int32_t milliseconds);
    Path& settingOf(FolderKind kind);
    void warnOfFolders();

    SettingFieldParts p_;
};

}  // namespace vantrell
