// SPDX-License-Identifier: MIT
#include "mainwindow/main_window_controller.h"

#include "base/date_text.h"

namespace vantrell {

void MainWindowController::startPressed() {
    if (p_.state.anyFolderIsEmpty()) return p_.window.setLabel2(kFolderIsEmpty);
    if (startQuestion_.isIdle()) startQuestion_.start(start());
}

Task<void> MainWindowController::start() {
    const Box box{"Running ", "Would you like to run one full pass once without running continuously?", Buttons::yesNo};
    const Answer answer = co_await p_.boxes.ask(box);
    if (answer == Answer::dismissed) co_return;
    const bool once = answer == Answer::yes;
    p_.passes.takeStart(once);
    p_.mode.TurnOnTimRun();
    p_.report.showInLabel2("ZEP Is Started at " + named(timeText(p_.clock.now())));
    p_.passes.timRun_Timer();
}

void MainWindowController::stopPressed() {
    p_.notices.operatorActed();
    p_.passes.stop();
    if (p_.state.PassInProgress) return;
    p_.mode.TurnOffTimRun();
    p_.report.showInLabel2("ZEP Timer Is STOPPED");
}

void MainWindowController::closeBoxPressed() {
    p_.end.saveAll();
    if (p_.mode.mode() != Mode::stopped) return p_.place.hide();
    p_.boxes.inform({kApplicationTitle,
                     "You have slected to minimize but the program is not scanning for file. "
                     "Program will not minimize."});
}

}  // namespace vantrell
