// SPDX-License-Identifier: MIT
#include "housekeeping/config_backup.h"

#include <utility>

#include "base/display_text.h"
#include "core/data_folder.h"
#include "core/file_helpers.h"
#include "core/unexpected_error.h"

namespace vantrell {

namespace {

constexpr char kSettingsRestored[] = "Configruation file has been restored from backup.";
constexpr char kSettingsNotRestored[] = "Configruation file has NOT been restored from backup.";
constexpr char kPasswordsRestored[] = "Password file has been restored from backup.";
constexpr char kPasswordsNotRestored[] = "Password file has NOT been restored from backup.";

constexpr std::chrono::milliseconds kRetryInterval(50);
constexpr std::chrono::milliseconds kPatience(5000);

Box boxOf(std::string text) { return {kApplicationTitle, std::move(text)}; }

}  // namespace

// By hand

Task<void> ConfigBackup::backupConfig() {
    std::vector<std::string> texts;
    try {
        const Path folder = makeBackupFolder(kBackupByHand);
        texts.push_back(settingsBackedUp(folder));
        // The passwords are copied before the first box is shown, since its answer may take long.
        texts.push_back(co_await passwordsBackedUp(folder));
    } catch (...) {
        texts.push_back(unexpectedError());
    }
    for (std::string& text : texts) {
        const Box box = boxOf(std::move(text));
        Pending<Answer> shown = p_.boxes.ask(box);
        standing_ = shown.ticket();
        co_await shown;
    }
}

Path ConfigBackup::makeBackupFolder(const char* name) {
    Path folder = joinPath(p_.state.AppFolder, name);
    // Only the user may read it. If the folder cannot be made, the copies fail and report it.
    if (!FolderExists(p_.toolbox, folder)) (void)p_.files.makePrivateFolders(folder);
    return folder;
}

std::string ConfigBackup::settingsBackedUp(const Path& folder) {
    const Path backup = joinPath(folder, kSettingsFileName);
    if (exists(live(kSettingsFileName)) && copySettings(live(kSettingsFileName), backup) != CopyResult::copied)
        return "Configruation file has NOT been saveed to the backup folder.";
    return exists(backup) ? "Current config file is backed up." : "Current Config File is NOT backed up.";
}

Task<std::string> ConfigBackup::passwordsBackedUp(Path folder) {
    const Path backup = joinPath(folder, kPasswordFileName);
    if (exists(live(kPasswordFileName))) {
        const Copy copy = [&] { return copies_.backUpPasswords(live(kPasswordFileName), backup, Unchanged::written); };
        const bool copied = co_await copyOnceUnlocked(copy);
        if (!copied) co_return "Password file has NOT been saveed to the backup folder.";
    }
    co_return exists(backup) ? "Password file is backed up." : "Password File is NOT backed up.";
}

// When the program ends

void ConfigBackup::onCloseConfigBackup() noexcept try {
    p_.closeStoreObjects();
    const Path folder = makeBackupFolder(kBackupOnClose);
    const auto copy = [&](const char* name, bool replaces, auto method) {
        const Path backup = joinPath(folder, name);
        if (!exists(live(name)) || (!replaces && exists(backup))) return;
        // A failure cannot be shown to anybody any more; the older copy stays.
        (void)(copies_.*method)(live(name), backup, Unchanged::leftAlone);
    };
    if (!p_.settings.wasFoundIncomplete()) copy(kSettingsFileName, settingsAreWorthACopy(), &FileCopies::copySettings);
    copy(kPasswordFileName, passwordsAreWorthACopy(), &FileCopies::backUpPasswords);
} catch (...) {
    // The program is ending and nobody could read a message.
    return;
}

// When the data folder was lost, the next start makes a new one with empty files. These must not replace the last
// copies of the lost files.
bool ConfigBackup::settingsAreWorthACopy() const {
    const SettingsRecord& settings = p_.state.settings;
    return !(settings.SourceFolder + settings.DestinationFolder + settings.DoneFolder + settings.RejectFolder).empty();
}

bool ConfigBackup::passwordsAreWorthACopy() const {
    const Result<std::string> file = p_.files.read(live(kPasswordFileName), p_.suppliedPasswords.size() + 1);
    return !file.ok() || file.value() != p_.suppliedPasswords;
}

// Restoring

void ConfigBackup::restoreOnCloseConfig() {
    restoreConfig(kBackupOnClose, {kSettingsNotRestored, kSettingsRestored, kSettingsNotRestored,
                                   "   Configruation file has NOT been restored from backup."});
}

void ConfigBackup::restoreNormalConfig() {
    restoreConfig(kBackupByHand, {"Configuration file has NOT been restored from backup.", kSettingsRestored,
                                  kSettingsNotRestored, "   Configruation file has NOT been restored from backup."});
}

// The box is not waited for. As long as the restored settings are not read, saving the settings would undo the restore.
void ConfigBackup::restoreConfig(const char* folderName, RestoreTexts texts) try {
    const Path backup = existingBackup(folderName, kSettingsFileName);
    if (backup.empty()) return;
    if (copySettings(backup, live(kSettingsFileName)) != CopyResult::copied)
        return p_.boxes.inform(boxOf(texts.failed));
    p_.settings.wasRestored();
    p_.boxes.inform(boxOf(exists(live(kSettingsFileName)) ? texts.restored : texts.missing));
} catch (...) {
    p_.boxes.inform(boxOf(unexpectedError() + texts.afterError));
}

Task<void> ConfigBackup::restoreOnClosePassword() {
    return restorePassword(kBackupOnClose, {kPasswordsNotRestored, kPasswordsRestored, kPasswordsNotRestored,
                                            "   Password file has NOT been restored from backup."});
}

Task<void> ConfigBackup::restoreNormalPassword() {
    return restorePassword(kBackupByHand, {kPasswordsNotRestored, kPasswordsRestored, kPasswordsNotRestored,
                                           "  Password file has NOT been restored from backup."});
}

Task<void> ConfigBackup::restorePassword(const char* folderName, RestoreTexts texts) {
    std::vector<std::string> shown;
    try {
        p_.closeStoreObjects();
        const Path backup = existingBackup(folderName, kPasswordFileName);
        if (!backup.empty()) shown = co_await passwordsRestored(backup, texts);
    } catch (...) {
        shown = {unexpectedError() + texts.afterError};
    }
    for (std::string& text : shown) p_.boxes.inform(boxOf(std::move(text)));
}

Task<std::vector<std::string>> ConfigBackup::passwordsRestored(Path backup, RestoreTexts texts) {
    Path kept;
    const Copy copy = [&] { return copies_.restorePasswords(backup, live(kPasswordFileName), kept); };
    const bool copied = co_await copyOnceUnlocked(copy);
    std::vector<std::string> shown{texts.failed};
    if (copied) shown = {exists(live(kPasswordFileName)) ? texts.restored : texts.missing};
    if (copied && !kept.empty())
        shown.push_back("The passwords that were replaced are kept in the file " + displayText(kept));
    co_return shown;
}

// Copying

CopyResult ConfigBackup::copySettings(const Path& source, const Path& target) {
    return copies_.copySettings(source, target, Unchanged::written);
}

// The tries are counted, not the seconds. A busy event loop then makes the wait longer, but never shorter.
Task<bool> ConfigBackup::copyOnceUnlocked(Copy copy) {
    for (auto waited = std::chrono::milliseconds::zero();; waited += kRetryInterval) {
        const CopyResult result = copy();
        if (result != CopyResult::locked || waited >= kPatience) co_return result == CopyResult::copied;
        co_await p_.loop.after(kRetryInterval);
    }
}

bool ConfigBackup::exists(const Path& file) const { return FileExists(p_.toolbox, file); }

Path ConfigBackup::existingBackup(const char* folderName, const char* fileName) const {
    const Path folder = joinPath(p_.state.AppFolder, folderName);
    if (!FolderExists(p_.toolbox, folder)) return {};
    Path file = joinPath(folder, fileName);
    return exists(file) ? file : Path();
}

Path ConfigBackup::live(const char* fileName) const { return joinPath(p_.state.AppFolder, fileName); }

}  // namespace vantrell
