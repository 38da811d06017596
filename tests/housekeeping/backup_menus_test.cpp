// SPDX-License-Identifier: MIT
#include "core/startup.h"
#include "housekeeping/backup_fixture.h"
#include "passwords/password_lookup.h"

namespace vantrell::test {
namespace {

class BackupMenusTest : public BackupFixture {
protected:
    BackupMenusTest() {
        bench.state.settings.SourceFolder = "/live";
        bench.timRun.setEnabled(true);
    }

    ManualTimer timMax;
    FakeInstanceLock instance;
    Startup startup{bench.parts(), {bench.files, instance, bench.controller, timMax, {}}};
    BackupMenus menus{{bench.state, bench.window, bench.boxes, bench.loop, bench.mode, backup,
                       [this] { return lookUpActivePassword(store, bench.state); },
                       [this] { startup.reloadSettings(); }}};
};

TEST_F(BackupMenusTest, RestoredSettingsAreShownAndNotSavedOver) {
    menus.mnuNBU();
    // Whatever saves next: a pass that ends, a menu.
    bench.settings.saveSettings();
    EXPECT_EQ(readFile(app + cfg), settingsOf("hand"));
    EXPECT_EQ(bench.window.folders[FolderKind::source], "/hand");
    EXPECT_EQ(bench.window.shown.SourceFolder, "/hand");
    EXPECT_TRUE(bench.timRun.isEnabled());
    EXPECT_FALSE(bench.state.UiLoading);
    menus.mnONLBackup();
    EXPECT_EQ(bench.window.folders[FolderKind::source], "/close");
}

TEST_F(BackupMenusTest, TheCopiesAreMadeBeforeABoxIsAnswered) {
    menus.mnBackup();
    menus.mnBackup();
    bench.loop.settle();
    EXPECT_EQ(takeTexts(), Strings{"Current config file is backed up."});
    EXPECT_EQ(activeIn(hand + mdb), Strings{"live"});
    menus.abort();
    EXPECT_TRUE(bench.boxes.openIds.empty());
}

}  // namespace
}  // namespace vantrell::test
