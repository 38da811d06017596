// SPDX-License-Identifier: MIT
#include "housekeeping/backup_menus.h"

namespace vantrell {

void BackupMenus::mnBackup() {
    if (backups_.isIdle()) backups_.start(p_.backup.backupConfig());
}

// The settings are read at once. If they were saved before they are read, that would undo the restore.
void BackupMenus::mnONLBackup() {
    p_.backup.restoreOnCloseConfig();
    p_.reloadSettings();
}

void BackupMenus::mnuNBU() {
    p_.backup.restoreNormalConfig();
    p_.reloadSettings();
}

Task<void> BackupMenus::restoreAndLookUp(Restore restore) {
    const TaskLock::Held turn = co_await turns_.acquire();
    co_await (p_.backup.*restore)();
    p_.state.ActivePassword.clear();
    co_await p_.lookUpActivePassword();
    if (!p_.state.ActivePassword.empty()) co_return;
    p_.mode.TurnOffTimRun();
    p_.window.setLabel2(std::string(kNoActivePassword) + ".");
    p_.boxes.inform({kApplicationTitle, kNoActivePassword});
}

void BackupMenus::abort() {
    backups_.abort();
    restores_.abort();
}

}  // namespace vantrell
