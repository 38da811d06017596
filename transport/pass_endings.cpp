// SPDX-License-Identifier: MIT
#include "transport/pass_endings.h"

#include "base/date_text.h"

namespace vantrell {

namespace {

constexpr char kFoldersMissing[] = "Source, Destination or Done Folders are missing";

}  // namespace

void PassEndings::paused(bool goesOn, Trouble trouble, const std::string& words, std::uint64_t rejected) {
    const Message text = "ZEP Is PAUSED at " + named(timeText(p_.clock.now()));
    p_.window.setPanel1(text.text());
    p_.window.setCaption(text.text());
    p_.report.showInLabel2(text);
    finish(goesOn ? Then::goesOn : Then::hasStopped, trouble, words, rejected);
}

void PassEndings::stopped(std::uint64_t rejected) {
    p_.window.setPanel1("User Stopped Encrypting Files");
    p_.window.setCaption("Done Encrpting Files");
    p_.report.showInLabel2("User Stopped Encrypting Files");
    finish(Then::hasStopped, Trouble::none, {}, rejected);
}

void PassEndings::missingFolders(const std::string& words, std::uint64_t rejected) {
    p_.window.setPanel1(kFoldersMissing);
    p_.window.setCaption(kProblem);
    p_.report.showInLabel2(kFoldersMissing);
    finish(Then::hasStopped, Trouble::folderGone, words, rejected);
}

void PassEndings::noPassword(std::uint64_t rejected) {
    p_.window.setCaption(kProblem);
    finish(Then::hasStopped, Trouble::noPassword, NoActivePassword::kText, rejected);
}

// Whoever has switched processing on meanwhile: only a pass that goes on by itself leaves it on.
void PassEndings::finish(Then then, Trouble trouble, const std::string& words, std::uint64_t rejected) {
    p_.state.PassInProgress = false;
    then == Then::goesOn ? p_.mode.TurnOnTimRun() : p_.mode.TurnOffTimRun();
    (void)p_.settings.save();
    p_.log.saveWhenOn();
    p_.window.setWaitPointer(false);
    p_.window.clearProgress();
    const bool isLogsTurn = trouble == Trouble::none && !p_.log.trouble().empty();
    p_.notices.passEnded(isLogsTurn ? Trouble::logNotSaved : trouble, isLogsTurn ? p_.log.trouble() : words, rejected,
                         then);
}

}  // namespace vantrell
