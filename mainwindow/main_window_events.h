// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "core/main_window.h"

namespace vantrell {

/// The buttons that start, stop and end, and what is done to the window itself.
class MainWindowEvents {
public:
    MainWindowEvents() = default;
    MainWindowEvents(const MainWindowEvents&) = delete;
    MainWindowEvents& operator=(const MainWindowEvents&) = delete;
    virtual ~MainWindowEvents() = default;

    virtual void startPressed() = 0;
    virtual void stopPressed() = 0;
    virtual void exitPressed() = 0;
    /// The window never closes by itself; it is hidden or closed through MainWindow.
    virtual void closeBoxPressed() = 0;
    virtual void minimized() = 0;
    /// It can be seen again, and what it shows must be so.
    virtual void appeared() = 0;
};

/// The fields in which settings are changed.
class SettingFieldEvents {
public:
    SettingFieldEvents() = default;
    SettingFieldEvents(const SettingFieldEvents&) = delete;
    SettingFieldEvents& operator=(const SettingFieldEvents&) = delete;
    virtual ~SettingFieldEvents() = default;

    /// True when choosing a folder makes sense now; then the window opens its folder dialog and `folderChosen` follows.
    virtual bool folderPressed(FolderKind kind) = 0;
    /// Empty when nothing was chosen.
    virtual void folderChosen(FolderKind kind, const Path& folder) = 0;
    /// The one that `MainWindow::offerFolder` has offered.
    virtual void folderTakenBack(FolderKind kind, const Path& lost) = 0;
    virtual void includeSubfoldersClicked(bool checked) = 0;
    /// The spin field: one step up or down from the text that stands in it, or the text after typing (UTF-8).
    virtual void intervalSpun(bool up, const std::string& text) = 0;
    virtual void intervalEdited(const std::string& text) = 0;
};

/// The menu entries with check marks that mirror settings, and the two that start the program with the session.
class OptionEntries {
public:
    OptionEntries() = default;
    OptionEntries(const OptionEntries&) = delete;
    OptionEntries& operator=(const OptionEntries&) = delete;
    virtual ~OptionEntries() = default;

    /// "Add to Startup"
    virtual void mnAddtoStartup() = 0;
    /// "Remove From  Start UP"
    virtual void mnuRemoveFromStartup() = 0;
    /// The desktop may have changed the entry meanwhile.
    virtual void startupMenuOpens() = 0;
    /// "Start and Run Continually at program Start Up?"
    virtual void mnuStartOnLoad() = 0;
    /// "Run Normal (Not Minimized) at Start Up?"
    virtual void mnmax() = 0;
    /// "Overwrite Existing Files"
    virtual void mnOW() = 0;
};

/// The menu entry "About", and the window that it opens.
class AboutEvents {
public:
    AboutEvents() = default;
    AboutEvents(const AboutEvents&) = delete;
    AboutEvents& operator=(const AboutEvents&) = delete;
    virtual ~AboutEvents() = default;

    virtual void aboutChosen() = 0;
    virtual void systemInfoPressed() = 0;
    /// What "Copy Diagnostics" puts into the clipboard. `toolkit` says what the window is made with and shown on.
    [[nodiscard]] virtual std::string diagnosticsWanted(const std::string& toolkit) = 0;
};

}  // namespace vantrell
