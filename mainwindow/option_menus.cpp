// SPDX-License-Identifier: MIT
#include "mainwindow/option_menus.h"

#include <utility>

#include "base/display_text.h"
#include "folderpicker/folder_choice.h"

namespace vantrell {

namespace {

constexpr char kRunningOptions[] = "Running Options";

}  // namespace

OptionMenus::OptionMenus(ProgramState& state, MainWindow& window, SettingsKeeper& settings, MessageBoxes& boxes,
                         WindowPlace& place, StartupEntry& entry, RunQueue& queue)
    : state_(state),
      window_(window),
      settings_(settings),
      boxes_(boxes),
      place_(place),
      entry_(entry),
      questions_(queue) {}

bool OptionMenus::ignoresClicks() {
    if (!questions_.isIdle()) boxes_.showAgain(standing_);
    return state_.UiLoading || !questions_.isIdle();
}

Task<Answer> OptionMenus::ask(std::string title, std::string text, bool defaultIsNo) {
    Box box{std::move(title), std::move(text), Buttons::yesNo, defaultIsNo};
    Pending<Answer> question = boxes_.ask(box);
    standing_ = question.ticket();
    co_return co_await question;
}

void OptionMenus::inform(std::string title, std::string text) { boxes_.inform({std::move(title), std::move(text)}); }

bool OptionMenus::saveAndShow() {
    const bool isSaved = settings_.save();
    window_.showSettings(state_.settings);
    return isSaved;
}

bool OptionMenus::setRunContinually(bool on) {
    state_.settings.RunContinuallyAtStartup = on;
    return saveAndShow();
}

bool OptionMenus::checkRunNormal() {
    state_.settings.RunNormalAtStartup = true;
    if (!saveAndShow()) return false;
    place_.restoreWindow();
    return true;
}

void OptionMenus::mnuStartOnLoad() {
    if (ignoresClicks()) return;
    const bool isChecked = state_.settings.RunContinuallyAtStartup;
    if (isChecked && !state_.settings.RunNormalAtStartup) return questions_.start(uncheckStartOnLoad());
    setRunContinually(!isChecked);
}

Task<void> OptionMenus::uncheckStartOnLoad() {
    const Answer answer = co_await ask(
        kRunningOptions,
        "Menu option 'Start Up Options - Run Normal (Not Minimized) at Start Up' is not checked.\r\n"
        "This option can not be unchecked (i.e. Does NOT run continuously) until Menu option \r\n"
        "'Start Up Options - Run Normal (Not Minimized) at Start Up (i.e. Does NOT Run minimized') is checked.\r\n\r\n"
        "Would you like to check this option now?\r\n"
        "If so the program will run NOT minimized and NOT continuously at start up");
    if (answer == Answer::dismissed) co_return;
    if (answer != Answer::yes) {
        inform(kRunningOptions, "Ok then this program will run minimized and continuously at start up.");
        co_return;
    }
    if (checkRunNormal()) setRunContinually(false);
}

void OptionMenus::mnmax() {
    if (ignoresClicks()) return;
    if (state_.settings.RunNormalAtStartup) return questions_.start(uncheckRunNormal());
    checkRunNormal();
}

Task<void> OptionMenus::uncheckRunNormal() {
    if (!state_.settings.RunContinuallyAtStartup) {
        const Answer check = co_await ask(
            kRunningOptions,
            "Menu option 'Start Up Options - Start and Run Continually at program Start Up' is not checked.\r\n"
            "This option must be checked in order to run minimized.\r\n\r\n"
            "Would you like to check this option?");
        if (check == Answer::dismissed) co_return;
        if (check != Answer::yes) {
            inform(kRunningOptions, "Ok then this program will not run minimized at start up.");
            co_return;
        }
        if (!setRunContinually(true)) co_return;
    }
    state_.settings.RunNormalAtStartup = false;
    // Saved before the question as well: it may stay open for long.
    if (!saveAndShow()) co_return;
    const Answer now = co_await ask(kRunningOptions, "Would you like to run minimized now?");
    if (now == Answer::yes && !state_.settings.RunNormalAtStartup) place_.hide();
    saveAndShow();
}

void OptionMenus::mnOW() {
    if (ignoresClicks()) return;
    if (!state_.settings.OverwriteExistingFiles) return questions_.start(checkOverwrite());
    state_.settings.OverwriteExistingFiles = false;
    saveAndShow();
}

Task<void> OptionMenus::checkOverwrite() {
    const Answer answer =
        co_await ask("File Overwrite Options",
                     " Are you sure you want to overwrite existing files?\r\n\r\nIf a previous encrypted file exists "
                     "in the folder " +
                         displayText(state_.settings.DestinationFolder) +
                         "\r\nit will be overwritten\r\n\r\nand if the orginal file exists in the folder " +
                         displayText(state_.settings.DoneFolder) + "\r\nit will be overwritten!",
                     true);
    if (answer != Answer::yes) co_return;
    state_.settings.OverwriteExistingFiles = true;
    if (!saveAndShow()) co_return;
    const std::string warning = folderWarning(state_.settings);
    if (!warning.empty()) inform(kApplicationTitle, warning);
}

bool OptionMenus::refuseDuringPass() {
    if (!state_.PassInProgress) return false;
    inform(kApplicationTitle,
           "Please confirm file change notification by closing the PopUp at the bottom left\r\n"
           "hand corner of your screen, by clicking the X to close.\r\nThen try here again!");
    return true;
}

void OptionMenus::mnAddtoStartup() {
    if (refuseDuringPass()) return;
    (void)entry_.add();
    window_.setStartupEntry(entry_.state());
    inform(kApplicationTitle, "ZEP Now Added to Start UP.  On the next boot ZEP will be take affect.");
}

void OptionMenus::mnuRemoveFromStartup() {
    if (refuseDuringPass()) return;
    (void)entry_.remove();
    window_.setStartupEntry(entry_.state());
    inform(kApplicationTitle, "ZEP is Now Removed Start UP. ");
}

}  // namespace vantrell
