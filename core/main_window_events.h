// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/main_window.h"

namespace vantrell {

/// What the operator does in the main window. The window forwards it and decides nothing.
class MainWindowEvents {
public:
    MainWindowEvents() = default;
    MainWindowEvents(const MainWindowEvents&) = delete;
    MainWindowEvents& operator=(const MainWindowEvents&) = delete;
    virtual ~MainWindowEvents() = default;

    virtual void startPressed() = 0;
    virtual void stopPressed() = 0;
    virtual void exitPressed() = 0;
    /// True when choosing a folder makes sense now; then the window opens its folder dialog and `folderChosen` follows.
    virtual bool folderPressed(FolderKind kind) = 0;
    /// Empty when nothing was chosen.
    virtual void folderChosen(FolderKind kind, const Path& folder) = 0;
    virtual void includeSubfoldersClicked(bool checked) = 0;
    /// The spin field: one step up or down from the text that stands in it, or the text after typing (UTF-8).
    virtual void intervalSpun(bool up, const std::string& text) = 0;
    virtual void intervalEdited(const std::string& text) = 0;
    /// The close box. The window never closes by itself; it is hidden or closed through MainWindow.
    /// Button "Weekly Auto-Delete Scheduler".
    virtual void schedulePressed() = 0;
    virtual void closeBoxPressed() = 0;
    virtual void minimized() = 0;

    // Menu "Start Up Options"
    virtual void addToStartupChosen() = 0;
    virtual void removeFromStartupChosen() = 0;
    virtual void startOnLoadChosen() = 0;
    virtual void runNormalChosen() = 0;

    // Menu "Passwords and Files"
    virtual void passwordsChosen() = 0;
    virtual void backupChosen() = 0;
    virtual void overwriteChosen() = 0;
    virtual void deleteDoneChosen() = 0;
    virtual void restoreSettingsFromUnloadChosen() = 0;
    virtual void restoreSettingsFromNormalChosen() = 0;
    virtual void restorePasswordsFromUnloadChosen() = 0;
    virtual void restorePasswordsFromNormalChosen() = 0;

    // Menu "View"
    virtual void viewCurrentLogChosen() = 0;
    virtual void viewCurrentPasswordChosen() = 0;
    virtual void historyChosen() = 0;
    virtual void turnOffLoggingChosen() = 0;

    virtual void aboutChosen() = 0;

    // The About window
    virtual void systemInfoPressed() = 0;
    /// What "Copy Diagnostics" puts into the clipboard. `toolkit` says what the window is made with and shown on.
    [[nodiscard]] virtual std::string diagnosticsWanted(const std::string& toolkit) = 0;
};

}  // namespace vantrell
