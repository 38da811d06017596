// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "core/program_state.h"
#include "core/settings_file.h"
#include "housekeeping/file_copies.h"
#include "platform/event_loop.h"
#include "platform/message_boxes.h"

namespace vantrell {

/// What the backups work with; everything outlives them.
struct BackupParts {
    const ProgramState& state;
    SettingsFile& settings;
    FileToolbox& toolbox;
    DataFiles& files;
    DatabaseCopier& databases;
    MessageBoxes& boxes;
    EventLoop& loop;
    const Clock& clock;
    /// Releases the password file.
    std::function<void()> closeStoreObjects;
    /// The password file as a new data folder gets it.
    std::string_view suppliedPasswords;
};

/// The folders of the two copies, below `AppFolder`.
inline constexpr char kBackupByHand[] = "Config Backup";
inline constexpr char kBackupOnClose[] = "Last Config Backup";

/// Two copies of ZEP.cfg and EDPasswords.mdb below `AppFolder`: "Config Backup", made by hand, and "Last Config
/// Backup", made when the program ends. A file is copied whole or not at all; a failed copy leaves its target as it
/// was. What is no whole settings file or no password file is neither backed up nor restored.
class ConfigBackup {
public:
    explicit ConfigBackup(BackupParts parts) : p_(std::move(parts)) {}

    /// Makes the copies by hand, then shows a box for each of the two, one after the other. A password file that is
    /// locked is tried again for 5 s.
    Task<void> backupConfig();
    /// Brings the box of such a backup to the front, when one is open.
    void showBoxAgain() { p_.boxes.showAgain(standing_); }
    /// When the program ends: says nothing and waits for nobody. A locked password file keeps its older copy, and so
    /// do settings of which only a part was found at start-up, unless they have been restored since. What a new data
    /// folder holds, settings without a folder and the supplied password file, replaces no older copy.
    void onCloseConfigBackup() noexcept;

    /// Put ZEP.cfg back and say so. The caller reads it before anything else can save the settings. Without a backup
    /// they do and say nothing.
    void restoreOnCloseConfig();
    void restoreNormalConfig();
    /// Put EDPasswords.mdb back and say so. The store's objects are closed first, and what they were writing is undone.
    /// A live file that is locked is tried again for 5 s. A second box names the copy of passwords that were replaced.
    Task<void> restoreOnClosePassword();
    Task<void> restoreNormalPassword();

private:
    using Copy = std::function<CopyResult()>;
    struct RestoreTexts {
        const char* failed;
        const char* restored;
        const char* missing;
        const char* afterError;
    };

    [[nodiscard]] Path makeBackupFolder(const char* name);
    [[nodiscard]] bool settingsAreWorthACopy() const;
    [[nodiscard]] bool passwordsAreWorthACopy() const;
    [[nodiscard]] std::string settingsBackedUp(const Path& folder);
    Task<std::string> passwordsBackedUp(Path folder);
    void restoreConfig(const char* folderName, RestoreTexts texts);
    Task<void> restorePassword(const char* folderName, RestoreTexts texts);
    /// The texts of the boxes.
    Task<std::vector<std::string>> passwordsRestored(Path backup, RestoreTexts texts);

    [[nodiscard]] CopyResult copySettings(const Path& source, const Path& target);
    /// What `copy` uses outlives the task.
    Task<bool> copyOnceUnlocked(Copy copy);
    [[nodiscard]] bool exists(const Path& file) const;
    /// Empty unless there is such a backup.
    [[nodiscard]] Path existingBackup(const char* folderName, const char* fileName) const;
    [[nodiscard]] Path live(const char* fileName) const;

    BackupParts p_;
    Ticket<Answer> standing_;
    FileCopies copies_{p_.toolbox, p_.files, p_.databases, p_.clock};
};

}  // namespace vantrell
