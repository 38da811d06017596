// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "core/about_facts.h"
#include "core/program_state.h"
#include "platform/startup_entry.h"

namespace vantrell {

/// `scanning`: a pass is at a file.
enum class Mode { stopped, automatic, running, scanning };

enum class FolderKind { source = 1, destination = 2, done = 3, reject = 4 };

/// What the main window can be told to show. Texts may hold paths and are bytes: the window decodes them for display.
class MainWindow {
public:
    MainWindow() = default;
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;
    virtual ~MainWindow() = default;

    // Status
    virtual void setCaption(const std::string& text) = 0;
    virtual void setLabel2(const std::string& text) = 0;
    virtual void setPanel1(const std::string& text) = 0;
    /// A trouble that lasts, beside panel 1 and in sight until it is over (empty).
    virtual void setWarning(const std::string& text) = 0;
    virtual void setMode(Mode mode) = 0;
    virtual void setClock(const std::string& text) = 0;
    virtual void setSchedule(const std::string& text) = 0;
    virtual void setStartEnabled(bool enabled) = 0;
    virtual void setStopEnabled(bool enabled) = 0;
    /// Hourglass while True (`mWait`), the usual pointer while False (`mOk`).
    virtual void setWaitPointer(bool waiting) = 0;

    // The file and the pass at work
    virtual void setCurrentFile(const std::string& name) = 0;
    virtual void setLastFile(const std::string& name) = 0;
    virtual void setTotalFiles(std::uint64_t count) = 0;
    virtual void setProcessedCount(std::int32_t count) = 0;
    /// How many of the `total` files of this pass are finished.
    virtual void setPassProgress(std::uint64_t done, std::uint64_t total) = 0;
    virtual void setFileProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal) = 0;
    /// Stop was pressed, and is waiting for the file at work. Goes with `clearProgress`.
    virtual void setStopping(bool stopping) = 0;
    /// No file is at work: the progress display is empty.
    virtual void clearProgress() = 0;

    // Settings
    virtual void setFolder(FolderKind kind, const Path& folder) = 0;
    /// While this folder is not set, its row offers to take `lost` back, and the chooser opens there.
    virtual void offerFolder(FolderKind kind, const Path& lost) = 0;
    virtual void setMinutes(const std::string& text) = 0;
    /// Tells of what was typed in a field that was not left yet.
    virtual void finishEditing() = 0;
    /// The check box and the check marks of the menus.
    virtual void showSettings(const SettingsRecord& settings) = 0;

    /// What the menu says about the entry that starts the program with the session.
    virtual void setStartupEntry(StartupEntry::State state) = 0;

    // The activity box
    /// Lines have joined those that the box shows.
    virtual void activityJoined() = 0;
    [[nodiscard]] virtual bool isActivityShown() const = 0;
    /// Also gives the window the height that belongs to it.
    virtual void setActivityShown(bool shown) = 0;

    // The window itself
    virtual void showWindow() = 0;
    /// Hides the window altogether. Only to be called where the tray icon can bring it back.
    virtual void hideWindow() = 0;
    virtual void minimizeWindow() = 0;
    virtual void closeWindow() = 0;
    /// Ends the minimized state.
    virtual void setNormalState() = 0;
    [[nodiscard]] virtual bool isMinimized() const = 0;
    /// Neither hidden nor minimised: somebody can look at it.
    [[nodiscard]] virtual bool isSeen() const = 0;
    /// 6780 by 11655 twips, or what the texts need.
    virtual void setNormalSize() = 0;
    virtual void bringToFront() = 0;
    /// The About window, in front; not modal.
    virtual void showAbout(const AboutFacts& facts) = 0;
};

}  // namespace vantrell
