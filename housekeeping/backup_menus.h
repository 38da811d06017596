// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "core/active_password.h"
#include "core/ending.h"
#include "housekeeping/backup_entries.h"
#include "housekeeping/config_backup.h"
#include "task/task_group.h"
#include "task/task_lock.h"

namespace vantrell {

/// What the menu entries work with; everything outlives them.
struct BackupMenuParts {
    RunQueue& queue;
    ConfigBackup& backup;
    ActivePassword& password;
    NoActivePassword& none;
    /// Reads the settings file again and shows what it holds.
    std::function<void()> reloadSettings;
};

/// The menu entries for backing up and restoring, and what follows a restore. A backup that is chosen again while it is
/// still at work does nothing, and while it shows its box, brings that to the front; a restore of the passwords waits
/// for the one before it.
class BackupMenus final : public BackupEntries, public Endable {
public:
    explicit BackupMenus(BackupMenuParts parts)
        : p_(std::move(parts)), backups_(p_.queue), turns_(p_.queue), restores_(p_.queue) {}

    void mnBackup() override;
    void mnONLBackup() override;
    void mnuNBU() override;
    void mnuRPassOn() override { restorePassword(&ConfigBackup::restoreOnClosePassword); }
    void mnuPassNormal() override { restorePassword(&ConfigBackup::restoreNormalPassword); }

    /// Every file that has been copied by then is whole; the other files are unchanged.
    void abort() override;

private:
    using Restore = Task<void> (ConfigBackup::*)();

    void restorePassword(Restore restore) { restores_.start(restoreAndLookUp(restore)); }
    Task<void> restoreAndLookUp(Restore restore);

    BackupMenuParts p_;
    TaskGroup backups_;
    TaskLock turns_;
    TaskGroup restores_;
};

}  // namespace vantrell
