// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <string>
#include <vector>

#include "mainwindow/frmMain.h"
#include "platform/files/posix_toolbox.h"
#include "platform/files/spilled_lines.h"
#include "rig/hand_cranked_loop.h"
#include "rig/temporary_folder.h"
#include "support/controls.h"
#include "support/doubles.h"

namespace vantrell::test {

/// Writes down what the window forwards, in order.
class RecordedEvents final : public MainWindowEvents,
                             public SettingFieldEvents,
                             public OptionEntries,
                             public AboutEvents,
                             public PasswordEditorEntry,
                             public CurrentPasswordEntry,
                             public BackupEntries,
                             public ScheduleEntry,
                             public DeleteDoneEntry,
                             public LogEntries {
public:
    void startPressed() override { seen.emplace_back("start"); }
    void stopPressed() override { seen.emplace_back("stop"); }
    void exitPressed() override { seen.emplace_back("exit"); }
    void closeBoxPressed() override { seen.emplace_back("close box"); }
    void minimized() override { seen.emplace_back("minimized"); }
    bool folderPressed(FolderKind kind) override {
        seen.push_back("folder " + std::to_string(static_cast<int>(kind)));
        return mayChooseFolder;
    }
    void folderChosen(FolderKind kind, const Path& folder) override {
        seen.push_back("chosen " + std::to_string(static_cast<int>(kind)) + " " + folder);
    }
    void includeSubfoldersClicked(bool checked) override { seen.emplace_back(checked ? "include" : "leave out"); }
    void intervalSpun(bool up, const std::string& text) override { seen.push_back((up ? "up " : "down ") + text); }
    void intervalEdited(const std::string& text) override { seen.push_back("edited " + text); }
    void mnAddtoStartup() override { seen.emplace_back("add"); }
    void mnuRemoveFromStartup() override { seen.emplace_back("remove"); }
    void mnuStartOnLoad() override { seen.emplace_back("start on load"); }
    void mnmax() override { seen.emplace_back("run normal"); }
    void mnOW() override { seen.emplace_back("overwrite"); }
    void cmdSched() override { seen.emplace_back("schedule"); }
    void open() override { seen.emplace_back("passwords"); }
    void viewCurrentPasswordChosen() override { seen.emplace_back("password"); }
    void mnBackup() override { seen.emplace_back("backup"); }
    void mnONLBackup() override { seen.emplace_back("settings, unload"); }
    void mnuNBU() override { seen.emplace_back("settings, normal"); }
    void mnuRPassOn() override { seen.emplace_back("passwords, unload"); }
    void mnuPassNormal() override { seen.emplace_back("passwords, normal"); }
    void mnDeleteDone() override { seen.emplace_back("delete done"); }
    void viewCurrentLogChosen() override { seen.emplace_back("view log"); }
    void turnOffLoggingChosen() override { seen.emplace_back("logging"); }
    void aboutChosen() override { seen.emplace_back("about"); }
    void systemInfoPressed() override { seen.emplace_back("system info"); }
    [[nodiscard]] std::string diagnosticsWanted(const std::string& toolkit) override {
        return "diagnostics of " + toolkit;
    }

    std::vector<std::string> seen;
    bool mayChooseFolder = false;
};

class RecordedHistory final : public HistoryEntry {
public:
    explicit RecordedHistory(std::vector<std::string>& seen) : seen_(seen) {}
    void open() override { seen_.emplace_back("history"); }

private:
    std::vector<std::string>& seen_;
};

using Seen = std::vector<std::string>;

/// A window on the (offscreen) screen, with the controls under their names.
class MainWindowTest : public ::testing::Test, protected Controls {
protected:
    void SetUp() override {
        useWindow(window);
        window.setListeners(&listeners);
        window.showWindow();
        window.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void TearDown() override { window.setListeners(nullptr); }

    RecordedEvents events;
    RecordedHistory history{events.seen};
    MainWindowListeners listeners{events, events, events, events, events, events,
                                  events, events, events, events, history};
    TemporaryFolder folder;
    Path folderOfLines = folder.path();
    HandCrankedLoop loop;
    SpilledLines lines{loop.kernel(), folderOfLines, folder.path()};
    SettableClock clock;
    PosixToolbox toolbox{loop, loop.kernel(), clock};
    frmMain window{lines, toolbox};
};

}  // namespace vantrell::test
