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
class RecordedEvents final : public MainWindowEvents {
public:
    void startPressed() override { seen.emplace_back("start"); }
    void stopPressed() override { seen.emplace_back("stop"); }
    void exitPressed() override { seen.emplace_back("exit"); }
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
    void closeBoxPressed() override { seen.emplace_back("close box"); }
    void minimized() override { seen.emplace_back("minimized"); }
    void addToStartupChosen() override { seen.emplace_back("add"); }
    void removeFromStartupChosen() override { seen.emplace_back("remove"); }
    void startOnLoadChosen() override { seen.emplace_back("start on load"); }
    void runNormalChosen() override { seen.emplace_back("run normal"); }
    void schedulePressed() override { seen.emplace_back("schedule"); }
    void passwordsChosen() override { seen.emplace_back("passwords"); }
    void backupChosen() override { seen.emplace_back("backup"); }
    void deleteDoneChosen() override { seen.emplace_back("delete done"); }
    void restoreSettingsFromUnloadChosen() override { seen.emplace_back("settings, unload"); }
    void restoreSettingsFromNormalChosen() override { seen.emplace_back("settings, normal"); }
    void restorePasswordsFromUnloadChosen() override { seen.emplace_back("passwords, unload"); }
    void restorePasswordsFromNormalChosen() override { seen.emplace_back("passwords, normal"); }
    void historyChosen() override { seen.emplace_back("history"); }
    void overwriteChosen() override { seen.emplace_back("overwrite"); }
    void viewCurrentPasswordChosen() override { seen.emplace_back("password"); }
    void aboutChosen() override { seen.emplace_back("about"); }
    void systemInfoPressed() override { seen.emplace_back("system info"); }
    [[nodiscard]] std::string diagnosticsWanted(const std::string& toolkit) override {
        return "diagnostics of " + toolkit;
    }
    void viewCurrentLogChosen() override { seen.emplace_back("view log"); }
    void turnOffLoggingChosen() override { seen.emplace_back("logging"); }

    std::vector<std::string> seen;
    bool mayChooseFolder = false;
};

using Seen = std::vector<std::string>;

/// A window on the (offscreen) screen, with the controls under their names.
class MainWindowTest : public ::testing::Test, protected Controls {
protected:
    void SetUp() override {
        useWindow(window);
        window.setEvents(&events);
        window.showWindow();
        window.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void TearDown() override { window.setEvents(nullptr); }

    RecordedEvents events;
    TemporaryFolder folder;
    Path folderOfLines = folder.path();
    HandCrankedLoop loop;
    SpilledLines lines{loop.kernel(), folderOfLines, folder.path()};
    SettableClock clock;
    PosixToolbox toolbox{loop, loop.kernel(), clock};
    frmMain window{lines, toolbox};
};

}  // namespace vantrell::test
