// SPDX-License-Identifier: MIT
#include "assembly/ending.h"

namespace vantrell {

void Ending::saveAll() {
    (void)p_.settings.save();
    p_.log.saveWhenOn();
}

void Ending::closeForGood() {
    if (p_.state.ClosingForGood) return;
    // Before the backup: what the operator has typed would be saved after it.
    p_.window.finishEditing();
    p_.state.ClosingForGood = true;
    for (Endable* one : atWork_) one->abort();
    (void)p_.file.saveSettings();  // nobody is left to be told
    p_.log.saveForGood();
    p_.backup.onCloseConfigBackup();
    p_.timRun.setEnabled(false);
    p_.tray.remove();
    p_.notices.operatorActed();
    p_.window.closeWindow();
    (void)p_.host.startProgram(joinPath(p_.host.programFolder(), "KillZEP"));
    quit_();
}

}  // namespace vantrell
