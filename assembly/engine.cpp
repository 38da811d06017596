// SPDX-License-Identifier: MIT
#include "assembly/engine.h"

#include <utility>

#include "base/date_text.h"
#include "core/data_folder.h"
#include "core/unexpected_error.h"
#include "passwords/supplied_password_file.h"

namespace vantrell {

namespace {

constexpr std::int32_t kStartupStepMs = 100;
constexpr std::int32_t kModeMs = 50;
constexpr std::int32_t kClockMs = 25;
// While nobody can see the window: an idle program should not keep a processor awake.
constexpr std::int32_t kUnseenMs = 500;

ProgramState stateBelow(const Path& profileFolder) {
    ProgramState state;
    state.AppFolder = appFolderBelow(profileFolder);
    return state;
}

}  // namespace

Engine::Engine(Machine given, Screen shown, std::function<void()> quit)
    : machine(std::move(given)),
      screen(std::move(shown)),
      state(stateBelow(machine.host.profileFolder())),
      settingsFile(joinPath(state.AppFolder, kSettingsFileName), state, machine.files, machine.clock),
      settings(state, settingsFile, screen.window, screen.boxes),
      mounts(machine.files, joinPath(state.AppFolder, kFolderMountsName)),
      log(state, machine.lines, screen.window, machine.files, machine.clock),
      report(screen.window, log),
      place(screen.window, screen.tray),
      notices(screen.notifier, machine.clock, screen.window, place, screen.boxes),
      timRun(machine.timers.create("timRun")),
      timMax(machine.timers.create("timMax")),
      tmchkTimer(machine.timers.create("tmchkTimer")),
      timCurTime(machine.timers.create("timCurTime")),
      timDelete(machine.timers.create("timDelete")),
      timWeeklyClock(machine.timers.create("timWeeklyClock")),
      mode(state, screen.window, *timRun),
      loadedSettings({state, screen.window, report, settingsFile, settings, screen.boxes, machine.entry, *timRun}),
      passwords(machine.loop.queue(), machine.database, screen.boxes, joinPath(state.AppFolder, kPasswordFileName),
                [this](const Path& path) { return machine.toolbox.kindOf(path) == EntryKind::regularFile; }),
      activePassword(machine.loop.queue(), [this] { return passwords.lookUpActivePassword(); }),
      noActivePassword(mode, screen.window, screen.boxes),
      passwordEditor(passwords, activePassword, screen.passwordWindow, screen.boxes, machine.loop.queue()),
      currentPassword(activePassword, noActivePassword, screen.boxes, machine.loop.queue()),
      backup({state, settingsFile, machine.toolbox, machine.files, machine.databaseCopier, screen.boxes, machine.loop,
              machine.clock, [this] { passwords.closeStoreObjects(); }, suppliedPasswordFile()}),
      backupMenus(
          {machine.loop.queue(), backup, activePassword, noActivePassword, [this] { loadedSettings.reload(); }}),
      weekly({state, screen.window, report, machine.toolbox, machine.loop, machine.clock, mode, *timDelete, mounts}),
      weeklyDialog({state, screen.weeklyWindow, settings, mode, machine.clock, *timWeeklyClock, weekly}),
      flushNote(machine.files, joinPath(state.AppFolder, kFlushNoteName)),
      namesakes(machine.files, joinPath(state.AppFolder, kNamesakesName)),
      pass({state, screen.window, report, log, settings, machine.toolbox, screen.boxes, machine.loop, machine.clock,
            *timRun, mode, notices, activePassword, noActivePassword, flushNote, namesakes, mounts, machine.claim},
           [&m = this->machine] { return std::make_unique<CryptoComponent>(m.loop, m.toolbox, m.makeCipher); }),
      passes(pass, machine.loop.queue()),
      ending({state, settingsFile, settings, log, backup, *timRun, screen.tray, notices, screen.window, machine.host},
             std::move(quit)),
      optionMenus(state, screen.window, settings, screen.boxes, place, machine.entry, machine.loop.queue()),
      logMenus(state, screen.window, log, settings, screen.boxes, machine.loop.queue()),
      about(state, screen.window, screen.boxes, machine.host, log),
      fields({state, screen.window, settings, screen.boxes, *timRun, mode, passes, machine.toolbox, mounts}),
      controller({state, screen.window, report, screen.boxes, machine.loop.queue(), machine.clock, mode, passes, place,
                  notices, ending, [this] { tickNow(); }}),
      startup({state, screen.window, log, settings, loadedSettings, place, passes, *timRun, *timMax, machine.host,
               machine.instance, screen.tray, screen.boxes, machine.files, machine.toolbox, machine.loop.queue()}) {
    connectTimers();
    machine.loop.queue().onException([this] {
        const std::string words = unexpectedError();
        log.logEvent(failureWords(words));
        screen.boxes.inform({kApplicationTitle, words});
    });
    machine.toolbox.onFlushFault([this] { flushNote.write(); });
    std::vector<Endable*> atWork{&controller, &logMenus,       &currentPassword, &optionMenus,  &passes,
                                 &startup,    &passwordEditor, &weekly,          &weeklyDialog, &backupMenus};
    atWork.insert(atWork.end(), screen.others.begin(), screen.others.end());
    ending.endsFirst(std::move(atWork));
}

void Engine::connectTimers() {
    timRun->onTick([this] { passes.timRun_Timer(); });
    timMax->onTick([this] { startup.timMax_Timer(); });
    tmchkTimer->onTick([this] { modeTick(); });
    timCurTime->onTick([this] { clockTick(); });
    timDelete->onTick([this] { weekly.timDelete_Timer(); });
    timWeeklyClock->onTick([this] { weeklyDialog.timClock_Timer(); });
    timMax->setInterval(kStartupStepMs);
    tmchkTimer->setInterval(kModeMs);
    timCurTime->setInterval(kClockMs);
}

void Engine::tickNow() {
    clockTick();
    modeTick();
}

void Engine::tickEvery(Timer& timer, std::int32_t seenMs) const {
    const std::int32_t wanted = screen.window.isSeen() ? seenMs : kUnseenMs;
    if (timer.interval() != wanted) timer.setInterval(wanted);
}

void Engine::clockTick() {
    tickEvery(*timCurTime, kClockMs);
    screen.window.setClock(timeText(machine.clock.now()));
    weekly.clockTick();
    notices.tick();
}

// Whoever has switched processing off, and however, from then on another program may process the folder.
void Engine::modeTick() {
    tickEvery(*tmchkTimer, kModeMs);
    mode.tmchkTimer_Timer();
    if (mode.mode() == Mode::stopped) machine.claim.release();
}

bool Engine::start() {
    if (!startup.load()) return false;
    for (const auto* timer : {&timMax, &tmchkTimer, &timCurTime}) (*timer)->setEnabled(true);
    return true;
}

MainWindowListeners Engine::listeners(HistoryEntry& history) {
    return {controller,  fields,       optionMenus, about,    passwordEditor, currentPassword,
            backupMenus, weeklyDialog, weekly,      logMenus, history};
}

}  // namespace vantrell
