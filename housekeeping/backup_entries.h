// SPDX-License-Identifier: MIT
#pragma once

namespace vantrell {

/// The menu entries for backing up and restoring settings and passwords.
class BackupEntries {
public:
    BackupEntries() = default;
    BackupEntries(const BackupEntries&) = delete;
    BackupEntries& operator=(const BackupEntries&) = delete;
    virtual ~BackupEntries() = default;

    /// "Backup Current Configuration Files"
    virtual void mnBackup() = 0;
    /// "Restore Configuration File Using the Unload Backup (Most Current)"
    virtual void mnONLBackup() = 0;
    /// "Restore Configuration File Using  the Normal Backup (Manul Backup)"
    virtual void mnuNBU() = 0;
    /// "Restore Password File Using the Unload Backup (Most Current)"
    virtual void mnuRPassOn() = 0;
    /// "Restore Password  File Using  the Normal Backup (Manul Backup)"
    virtual void mnuPassNormal() = 0;
};

}  // namespace vantrell
