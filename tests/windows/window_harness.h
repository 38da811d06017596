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

/// A window on the (offscreen) screen, with the controls under their names. Nobody listens to it.
class MainWindowTest : public ::testing::Test, protected Controls {
protected:
    void SetUp() override {
        useWindow(window);
        window.showWindow();
        window.bringToFront();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    TemporaryFolder folder;
    Path folderOfLines = folder.path();
    HandCrankedLoop loop;
    SpilledLines lines{loop.kernel(), folderOfLines, folder.path()};
    SettableClock clock;
    PosixToolbox toolbox{loop, loop.kernel(), clock};
    frmMain window{lines, toolbox};
};

}  // namespace vantrell::test
