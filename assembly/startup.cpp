// SPDX-License-Identifier: MIT
#include "assembly/startup.h"

#include "base/display_text.h"
#include "core/data_folder.h"
#include "core/scan_interval.h"
#include "housekeeping/config_backup.h"
#include "passwords/supplied_password_file.h"

namespace vantrell {

namespace {

// The tip has always been cut to 64 characters, the final NUL included.
constexpr char kTrayTip[] = " Quillon Inc - ZEP \r\n Double Click or Click Right Mouse Button ";
static_assert(sizeof kTrayTip <= 64);

}  // namespace

bool Startup::load() {
    p_.state.UiLoading = true;
    p_.state.StartupPassMarker = true;
    if (!takeDataFolder()) return false;
    p_.state.WindowLoading = true;
    p_.log.logEvent("Loading");
    if (!isLocked_) tellOfMissingLock();
    makeOwnFilesPrivate();
    supplyPasswordFile();
    p_.loaded.read();
    p_.timRun.setInterval(effectiveIntervalMs(p_.state.settings.ScanIntervalMs));
    p_.timRun.setEnabled(threeFoldersAreSet() && p_.state.settings.RunContinuallyAtStartup);
    p_.window.showWindow();
    p_.tray.add(kTrayTip);
    p_.loaded.showFolders();
    p_.state.WindowLoading = false;
    p_.log.logEvent("Loaded");
    (void)p_.settings.save();
    p_.loaded.showOptions();
    (void)p_.files.makePrivateFolders(logFolderBelow(p_.state.AppFolder));
    p_.log.saveWhenOn();  // a data folder that cannot be written is noticed now, not after days
    p_.state.UiLoading = false;
    cleanUpDataFolder();
    cleanUp_.start(p_.log.mendTornEnds(p_.toolbox));
    return true;
}

bool Startup::takeDataFolder() {
    const Path& folder = p_.state.AppFolder;
    (void)p_.files.makePrivateFolders(folder);
    const InstanceLock::Outcome outcome = p_.instance.tryLock(folder);
    isLocked_ = outcome == InstanceLock::Outcome::locked;
    if (outcome != InstanceLock::Outcome::anothers) return true;
    (void)p_.host.startProgram(joinPath(p_.host.programFolder(), "OpenedMsg"));
    return false;
}

// A file system without locks is no reason to carry nothing.
void Startup::tellOfMissingLock() {
    constexpr char kText[] = "The data folder cannot be locked, so a second start on it would not be noticed.";
    p_.log.logEvent(kText);
    p_.boxes.inform({kApplicationTitle, kText + std::string(" Please run this program only once at a time.")});
}

// They may have been put there by hand, or by a version that did not see to it. The levels above are not ours.
void Startup::makeOwnFilesPrivate() {
    const Path& app = p_.state.AppFolder;
    std::string words;
    for (const Path& folder : {app, joinPath(app, kBackupByHand), joinPath(app, kBackupOnClose)})
        for (const Path& path : {folder, joinPath(folder, kSettingsFileName), joinPath(folder, kPasswordFileName)})
            if (const Result<> done = p_.files.makePrivate(path); !done.ok() && words.empty())
                words = done.fault().text;
    if (words.empty()) return;
    p_.boxes.inform(
        {kApplicationTitle, "Other users of this computer may be able to read the passwords: " + displayText(words)});
}

// Only a fresh profile is supplied: a password file that goes missing later must be noticed, not replaced.
void Startup::supplyPasswordFile() {
    const Path settings = joinPath(p_.state.AppFolder, kSettingsFileName);
    const Path passwords = joinPath(p_.state.AppFolder, kPasswordFileName);
    const auto isMissing = [&](const Path& path) { return p_.files.read(path, 1).failedWith(FaultKind::notThere); };
    if (isMissing(settings) && isMissing(passwords)) (void)p_.files.writeAtomically(passwords, suppliedPasswordFile());
}

// The operator's own folders may not be there yet; a pass sees to them. In Source nothing is ever removed.
void Startup::cleanUpDataFolder() {
    const Path& app = p_.state.AppFolder;
    std::vector<Path> folders{app, joinPath(app, kBackupByHand), joinPath(app, kBackupOnClose)};
    std::erase_if(folders, [this](const Path& folder) {
        const Result<bool> isSource = p_.toolbox.isSameFolder(folder, p_.state.settings.SourceFolder);
        return !isSource.ok() || isSource.value();
    });
    cleanUp_.start(p_.toolbox.cleanUpAfterCrash(std::move(folders), {}, [] { return false; }));
}

bool Startup::threeFoldersAreSet() const {
    const SettingsRecord& settings = p_.state.settings;
    return !settings.SourceFolder.empty() && !settings.DestinationFolder.empty() && !settings.DoneFolder.empty();
}

void Startup::timMax_Timer() {
    p_.timMax.setEnabled(false);
    const SettingsRecord& settings = p_.state.settings;
    // Hidden and idle would be a program that nobody sees and that does nothing.
    const bool worksByItself = settings.RunContinuallyAtStartup && !p_.state.anyFolderIsEmpty();
    if (!settings.RunNormalAtStartup && worksByItself) {
        p_.place.hide();
    } else if (settings.RunNormalAtStartup) {
        p_.place.restoreWindow();
    }
    if (threeFoldersAreSet())
        p_.passes.timRun_Timer();
    else
        p_.state.StartupPassMarker = false;
}

}  // namespace vantrell
