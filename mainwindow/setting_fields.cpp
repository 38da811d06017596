// SPDX-License-Identifier: MIT
#include "mainwindow/setting_fields.h"

#include <utility>

#include "core/scan_interval.h"
#include "folderpicker/folder_choice.h"

namespace vantrell {

namespace {

// ZEP.cfg has no way to write these.
bool canBeStored(const Path& folder) { return folder.find_first_of("\"\r\n") == Path::npos; }

Path withoutTrailingSeparators(Path folder) {
    while (!folder.empty() && folder.back() == kPathSeparator) folder.pop_back();
    return folder;
}

}  // namespace

bool SettingFields::folderPressed(FolderKind) {
    if (p_.state.WindowLoading) {
        p_.window.setWaitPointer(false);
        return false;
    }
    p_.mode.TurnOffTimRun();
    p_.passes.stop();
    return true;
}

void SettingFields::folderChosen(FolderKind kind, const Path& folder) {
    if (!canBeStored(folder)) {
        p_.boxes.inform({kApplicationTitle,
                         "A folder whose name holds a double quote or a line break cannot be used. "
                         "The folder stays as it was."});
        return;
    }
    const Path chosen = withoutTrailingSeparators(folder);
    if (chosen.empty()) return emptyFolder(kind);
    if (setFolder(kind, chosen)) p_.mounts.chosen({chosen, p_.toolbox.mountUnder(chosen)});
}

// It is saved with the next save only: whoever has cancelled by mistake takes the folder back before.
void SettingFields::emptyFolder(FolderKind kind) {
    const Path lost = std::exchange(settingOf(kind), {});
    showFolder(kind);
    if (!lost.empty()) p_.window.offerFolder(kind, lost);
    p_.window.setLabel2("You can not define a root of any drive!");
}

bool SettingFields::setFolder(FolderKind kind, const Path& folder) {
    const bool wasOneMissing = p_.state.anyFolderIsEmpty();
    settingOf(kind) = folder;
    if (!p_.settings.save()) return false;
    showFolder(kind);
    // What it said was about a folder that is missing; now it may be another one, or none.
    if (wasOneMissing) p_.window.setLabel2(p_.state.anyFolderIsEmpty() ? kFolderIsEmpty : "");
    warnOfFolders();
    return true;
}

void SettingFields::showFolder(FolderKind kind) {
    const Path& folder = settingOf(kind);
    p_.window.setFolder(kind, folder);
    if (kind == FolderKind::source) p_.window.setPanel1("ZEP Folder = " + folder);
}

void SettingFields::warnOfFolders() {
    const std::string warning = folderWarning(p_.state.settings);
    if (!warning.empty()) p_.boxes.inform({kApplicationTitle, warning});
}

Path& SettingFields::settingOf(FolderKind kind) {
    switch (kind) {
        case FolderKind::source:
            return p_.state.settings.SourceFolder;
        case FolderKind::destination:
            return p_.state.settings.DestinationFolder;
        case FolderKind::done:
            return p_.state.settings.DoneFolder;
        case FolderKind::reject:
            break;
    }
    return p_.state.settings.RejectFolder;
}

void SettingFields::includeSubfoldersClicked(bool checked) {
    if (p_.state.UiLoading) return;
    p_.state.settings.IncludeSubfolders = checked;
    if (p_.settings.save() && checked) warnOfFolders();
}

void SettingFields::intervalSpun(bool up, const std::string& text) { takeInterval(intervalAfterSpin(text, up)); }
void SettingFields::intervalEdited(const std::string& text) { takeInterval(intervalFromText(text)); }

void SettingFields::takeInterval(std::int32_t milliseconds) {
    if (p_.state.UiLoading || p_.state.ClosingForGood) return;
    p_.state.settings.ScanIntervalMs = milliseconds;
    if (!p_.settings.save()) return;
    p_.window.setMinutes(minutesText(milliseconds));
    p_.timRun.setInterval(milliseconds);
}

}  // namespace vantrell
