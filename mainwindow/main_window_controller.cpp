// SPDX-License-Identifier: MIT
#include "mainwindow/main_window_controller.h"

#include <utility>

#include "base/date_text.h"
#include "core/scan_interval.h"
#include "folderpicker/folder_choice.h"
#include "mainwindow/diagnostics.h"
#include "mainwindow/system_information.h"

namespace vantrell {

namespace {

constexpr char kFolderIsEmpty[] = "One or all of the folder parameters are missing. Please check below.";

// ZEP.cfg has no way to write these.
bool canBeStored(const Path& folder) { return folder.find_first_of("\"\r\n") == Path::npos; }

Path withoutTrailingSeparators(Path folder) {
    while (!folder.empty() && folder.back() == kPathSeparator) folder.pop_back();
    return folder;
}

}  // namespace

MainWindowController::MainWindowController(ControllerParts parts, std::function<void()> quit)
    : p_(parts),
      quit_(std::move(quit)),
      passes_(parts.loop.queue()),
      startQuestion_(parts.loop.queue()),
      loggingQuestion_(parts.loop.queue()),
      passwordLookup_(parts.loop.queue()) {}

void MainWindowController::startPressed() {
    if (p_.state.anyFolderIsEmpty()) return p_.window.setLabel2(kFolderIsEmpty);
    if (startQuestion_.isIdle()) startQuestion_.start(start());
}

Task<void> MainWindowController::start() {
    const Box box{"Running ", "Would you like to run one full pass once without running continuously?", Buttons::yesNo};
    const Answer answer = co_await p_.boxes.ask(box);
    const bool once = answer == Answer::yes;
    if (!once) p_.state.SinglePassMode = false;
    p_.state.FreshStartPending = !once;
    p_.mode.TurnOnTimRun();
    p_.report.showInLabel2("ZEP Is Started at " + named(timeText(p_.clock.now())));
    if (once)
        p_.state.SinglePassMode = true;
    else
        p_.state.StopRequested = false;
    timRun_Timer();
}

void MainWindowController::timRun_Timer() {
    if (passes_.isIdle()) passes_.start(p_.pass.timRun_Timer());
}

void MainWindowController::stopPressed() {
    p_.notices.operatorActed();
    endPass();
    if (p_.state.PassInProgress) return;
    p_.mode.TurnOffTimRun();
    p_.report.showInLabel2("ZEP Timer Is STOPPED");
}

void MainWindowController::endPass() {
    if (p_.state.PassInProgress) return p_.pass.requestStop();
    // A pass that has not begun to search yet has nothing to finish.
    if (passes_.isIdle()) return;
    passes_.abort();
    p_.pass.passWasAborted();
}

bool MainWindowController::folderPressed(FolderKind) {
    if (p_.state.WindowLoading) {
        p_.window.setWaitPointer(false);
        return false;
    }
    p_.mode.TurnOffTimRun();
    endPass();
    return true;
}

void MainWindowController::folderChosen(FolderKind kind, const Path& folder) {
    if (!canBeStored(folder)) {
        p_.boxes.inform({kApplicationTitle,
                         "A folder whose name holds a double quote or a line break cannot be used. "
                         "The folder stays as it was."});
        return;
    }
    const bool wasOneMissing = p_.state.anyFolderIsEmpty();
    Path& setting = settingOf(kind);
    setting = withoutTrailingSeparators(folder);
    p_.window.setFolder(kind, setting);
    if (kind == FolderKind::source) p_.window.setPanel1("ZEP Folder = " + setting);
    if (setting.empty())
        p_.window.setLabel2("You can not define a root of any drive!");
    else if (wasOneMissing && !p_.state.anyFolderIsEmpty())
        p_.window.setLabel2({});  // it said that a folder is missing
    p_.settings.saveSettings();
    if (!setting.empty()) warnOfFolders();
}

void MainWindowController::warnOfFolders() {
    const std::string warning = folderWarning(p_.state.settings);
    if (!warning.empty()) p_.boxes.inform({kApplicationTitle, warning});
}

Path& MainWindowController::settingOf(FolderKind kind) {
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

void MainWindowController::includeSubfoldersClicked(bool checked) {
    if (p_.state.UiLoading) return;
    p_.state.settings.IncludeSubfolders = checked;
    p_.settings.saveSettings();
    if (checked) warnOfFolders();
}

void MainWindowController::intervalSpun(bool up, const std::string& text) { takeInterval(intervalAfterSpin(text, up)); }
void MainWindowController::intervalEdited(const std::string& text) { takeInterval(intervalFromText(text)); }

void MainWindowController::takeInterval(std::int32_t milliseconds) {
    if (p_.state.UiLoading) return;
    p_.state.settings.ScanIntervalMs = milliseconds;
    p_.window.setMinutes(minutesText(milliseconds));
    p_.timRun.setInterval(milliseconds);
    p_.settings.saveSettings();
}

void MainWindowController::timCurTime_Timer() {
    p_.window.setClock(timeText(p_.clock.now()));
    p_.others.weeklyClockTick();
    p_.notices.tick();
}

void MainWindowController::viewCurrentLogChosen() { p_.window.setActivityShown(!p_.window.isActivityShown()); }

void MainWindowController::turnOffLoggingChosen() {
    if (p_.state.UiLoading) return;
    if (p_.state.settings.LoggingTurnedOff) return switchLogging(false, "User Turned on Logging");
    if (loggingQuestion_.isIdle()) loggingQuestion_.start(turnOffLogging());
}

Task<void> MainWindowController::turnOffLogging() {
    const Box box{"Logging Options",
                  "If logging is turned off entries in the Activies Log will stop logging and events will not be "
                  "captured. Is this OK?",
                  Buttons::yesNo};
    const Answer answer = co_await p_.boxes.ask(box);
    if (answer == Answer::yes)
        switchLogging(true, "User Turned off Logging");
    else
        p_.boxes.inform({kApplicationTitle, "Ok then this program will keep logging."});
}

void MainWindowController::switchLogging(bool turnedOff, const Message& event) {
    p_.state.settings.LoggingTurnedOff = turnedOff;
    p_.window.showSettings(p_.state.settings);
    p_.log.logEvent(event);
    p_.log.writetofile();
    p_.settings.saveSettings();
}

void MainWindowController::viewCurrentPasswordChosen() {
    if (passwordLookup_.isIdle()) passwordLookup_.start(viewCurrentPassword());
}

Task<void> MainWindowController::viewCurrentPassword() {
    p_.state.ActivePassword.clear();
    co_await p_.lookUpActivePassword();
    if (!p_.state.ActivePassword.empty()) co_return p_.boxes.inform({kApplicationTitle, p_.state.ActivePassword});
    p_.mode.TurnOffTimRun();
    p_.window.setLabel2(std::string(kNoActivePassword) + ".");
    p_.boxes.inform({kApplicationTitle, kNoActivePassword});
}

AboutFacts MainWindowController::aboutFacts() const {
    return {kApplicationTitle, programVersion(), libraryVersions(), p_.state.AppFolder};
}

void MainWindowController::systemInfoPressed() {
    if (!startSystemInformation(p_.host))
        p_.boxes.inform({kApplicationTitle, "System Information Is Unavailable At This Time"});
}

std::string MainWindowController::diagnosticsWanted(const std::string& toolkit) {
    return diagnosticsText({aboutFacts(),
                            {{"Toolkit", toolkit},
                             {"Desktop", p_.host.environment("XDG_CURRENT_DESKTOP")},
                             {"Session", p_.host.environment("XDG_SESSION_TYPE")}},
                            p_.state.settings,
                            p_.log.lastEvents()});
}

void MainWindowController::minimized() { p_.place.hide(); }

void MainWindowController::saveAll() {
    p_.settings.saveSettings();
    p_.log.saveWhenOn();
}

void MainWindowController::closeBoxPressed() {
    saveAll();
    if (p_.mode.mode() != Mode::stopped) return p_.place.hide();
    p_.boxes.inform({kApplicationTitle,
                     "You have slected to minimize but the program is not scanning for file. "
                     "Program will not minimize."});
}

void MainWindowController::exitPressed() { closeForGood(); }

void MainWindowController::closeForGood() {
    if (std::exchange(p_.state.ClosingForGood, true)) return;
    startQuestion_.abort();
    loggingQuestion_.abort();
    passwordLookup_.abort();
    p_.menus.abort();
    passes_.abort();
    p_.others.abort();
    p_.settings.saveSettings();
    p_.log.saveForGood();
    p_.others.backUpOnClose();
    p_.timRun.setEnabled(false);
    p_.tray.remove();
    p_.notices.operatorActed();
    p_.window.closeWindow();
    (void)p_.host.startProgram(joinPath(p_.host.programFolder(), "KillZEP"));
    quit_();
}

}  // namespace vantrell
