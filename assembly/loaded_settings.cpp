// SPDX-License-Identifier: MIT
#include "assembly/loaded_settings.h"

#include <utility>

#include "core/scan_interval.h"

namespace vantrell {

void LoadedSettings::read() {
    const SettingsFile::Loaded loaded = p_.file.loadSettings();
    areWhole_ = loaded == SettingsFile::Loaded::whole && !p_.file.wasFoundIncomplete();
    switch (loaded) {
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

void LoadedSettings::showFolders() {
    const SettingsRecord& settings = p_.state.settings;
    for (const auto& [kind, folder] : foldersOf(settings)) {
        if (folder.empty()) {
            showNormal();
            (void)p_.settings.save();
        }
        p_.window.setFolder(kind, folder);
    }
    p_.window.setCaption("Quillon Inc - Vantrell(ZEP)");
    reportMissingFolders();
    p_.window.setPanel1("ZEP Folder = " + settings.SourceFolder);
}

void LoadedSettings::reportMissingFolders() {
    p_.timRun.setInterval(effectiveIntervalMs(p_.state.settings.ScanIntervalMs));
    if (!p_.state.anyFolderIsEmpty()) return;
    p_.report.showInLabel2("One or all of the folders are missing. Please check below.");
    p_.timRun.setEnabled(false);
    p_.report.showInLabel2("One or all of the folder  parameters are missing. Please check below.");
    p_.window.setNormalState();
    p_.window.showWindow();
    // Folders that are only missing because the settings could not be read may come back with them.
    if (areWhole_) (void)p_.entry.remove();
}

void LoadedSettings::showOptions() {
    p_.window.setMinutes(minutesText(p_.state.settings.ScanIntervalMs));
    p_.window.showSettings(p_.state.settings);
    p_.window.setStartupEntry(p_.entry.state());
}

// The controls may not take what they are shown for a change by the operator.
void LoadedSettings::reload() {
    const bool wasLoading = std::exchange(p_.state.UiLoading, true);
    const bool wasOneMissing = p_.state.anyFolderIsEmpty();
    read();
    showFolders();
    showOptions();
    if (wasOneMissing && !p_.state.anyFolderIsEmpty()) p_.window.setLabel2({});  // it said that a folder is missing
    p_.state.UiLoading = wasLoading;
}

void LoadedSettings::showNormal() {
    p_.window.setNormalState();
    if (!p_.window.isMinimized()) p_.window.setNormalSize();
}

}  // namespace vantrell
