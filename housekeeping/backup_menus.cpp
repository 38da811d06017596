// SPDX-License-Identifier: MIT
#include "housekeeping/backup_menus.h"

namespace vantrell {

void BackupMenus::mnBackup() {
    backups_.isIdle() ? backups_.start(p_.backup.backupConfig()) : p_.backup.showBoxAgain();
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
    const std::string found = co_await p_.password.lookUp();
    if (found.empty()) p_.none.tell();
}

void BackupMenus::abort() {
    backups_.abort();
    restores_.abort();
}

}  // namespace vantrell
