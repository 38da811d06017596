// SPDX-License-Identifier: MIT
#include "assembly/startup.h"

#include <utility>

#include "core/data_folder.h"
#include "core/scan_interval.h"

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
    supplyPasswordFile();
    readSettings();
    p_.timRun.setInterval(effectiveIntervalMs(p_.state.settings.ScanIntervalMs));
    p_.timRun.setEnabled(threeFoldersAreSet() && p_.state.settings.RunContinuallyAtStartup);
    p_.window.showWindow();
    p_.window.repaint();
    p_.tray.add(kTrayTip);
    showLoadedSettings();
    p_.state.WindowLoading = false;
    p_.log.logEvent("Loaded");
    p_.settings.saveSettings();
    showSettings();
    p_.state.LogFolder = logFolderBelow(p_.state.AppFolder);
    (void)more_.files.makePrivateFolders(p_.state.LogFolder);
    p_.state.UiLoading = false;
    return true;
}

bool Startup::takeDataFolder() {
    const Path folder = appFolderBelow(p_.host.profileFolder());
    p_.state.AppFolder = folder;
    p_.state.ProductTitle = kProductName;
    (void)more_.files.makePrivateFolders(folder);
    if (more_.instance.tryLock(folder)) return true;
    (void)p_.host.startProgram(joinPath(p_.host.programFolder(), "OpenedMsg"));
    return false;
}

// Only a fresh profile is supplied: a password file that goes missing later must be noticed, not replaced.
void Startup::supplyPasswordFile() {
    const Path settings = joinPath(p_.state.AppFolder, kSettingsFileName);
    const Path passwords = joinPath(p_.state.AppFolder, kPasswordFileName);
    const auto isMissing = [&](const Path& path) { return more_.files.read(path, 1).failedWith(FaultKind::notThere); };
    if (isMissing(settings) && isMissing(passwords))
        (void)more_.files.writeAtomically(passwords, more_.suppliedPasswordFile);
}

void Startup::readSettings() {
    p_.state.SettingsFilePath = joinPath(p_.state.AppFolder, kSettingsFileName);
    switch (p_.settings.loadSettings()) {
        case SettingsFile::Loaded::incomplete:
            return p_.boxes.inform(
                {kApplicationTitle,
                 "Not all of the settings file ZEP.cfg could be read. What could be read is used; the "
                 "file as it was is kept beside it under a name with today's date."});
        case SettingsFile::Loaded::unreadable:
            return p_.boxes.inform(
                {kApplicationTitle,
                 "The settings file ZEP.cfg could not be read. It stays as it is, and changes of the "
                 "settings will not be saved."});
        default:
            break;
    }
}

void Startup::showLoadedSettings() {
    showFolders();
    p_.window.setCaption("Quillon Inc - Vantrell(ZEP)");
    reportMissingFolders();
    p_.window.setPanel1("ZEP Folder = " + p_.state.settings.SourceFolder);
}

// The controls may not take what they are shown for a change by the operator.
void Startup::reloadSettings() {
    const bool wasLoading = std::exchange(p_.state.UiLoading, true);
    readSettings();
    showLoadedSettings();
    showSettings();
    p_.state.UiLoading = wasLoading;
}

void Startup::showFolders() {
    const SettingsRecord& settings = p_.state.settings;
    const std::pair<FolderKind, const Path&> folders[] = {{FolderKind::source, settings.SourceFolder},
                                                          {FolderKind::destination, settings.DestinationFolder},
                                                          {FolderKind::done, settings.DoneFolder},
                                                          {FolderKind::reject, settings.RejectFolder}};
    for (const auto& [kind, folder] : folders) {
        if (folder.empty()) {
            showNormal();
            p_.settings.saveSettings();
        }
        p_.window.setFolder(kind, folder);
    }
}

void Startup::reportMissingFolders() {
    p_.timRun.setInterval(effectiveIntervalMs(p_.state.settings.ScanIntervalMs));
    if (!p_.state.anyFolderIsEmpty()) return;
    p_.report.showInLabel2("One or all of the folders are missing. Please check below.");
    p_.timRun.setEnabled(false);
    p_.report.showInLabel2("One or all of the folder  parameters are missing. Please check below.");
    p_.window.setNormalState();
    p_.window.showWindow();
    (void)p_.entry.remove();
}

void Startup::showSettings() {
    p_.window.setMinutes(minutesText(p_.state.settings.ScanIntervalMs));
    p_.window.showSettings(p_.state.settings);
    p_.window.setStartupEntry(p_.entry.state());
}

void Startup::showNormal() {
    p_.window.setNormalState();
    if (!p_.window.isMinimized()) p_.window.setNormalSize();
}

bool Startup::threeFoldersAreSet() const {
    const SettingsRecord& settings = p_.state.settings;
    return !settings.SourceFolder.empty() && !settings.DestinationFolder.empty() && !settings.DoneFolder.empty();
}

void Startup::timMax_Timer() {
    more_.timMax.setEnabled(false);
    const SettingsRecord& settings = p_.state.settings;
    // Hidden and idle would be a program that nobody sees and that does nothing.
    const bool worksByItself = settings.RunContinuallyAtStartup && !p_.state.anyFolderIsEmpty();
    if (!settings.RunNormalAtStartup && worksByItself) {
        p_.place.hide();
    } else if (settings.RunNormalAtStartup) {
        p_.place.restoreWindow();
    }
    if (threeFoldersAreSet())
        more_.controller.timRun_Timer();
    else
        p_.state.StartupPassMarker = false;
}

}  // namespace vantrell
