// SPDX-License-Identifier: MIT
#include "app/program.h"

#include <QCoreApplication>

#include "passwords/password_lookup.h"
#include "passwords/supplied_password_file.h"
#include "platform/desktop/user_folders.h"
#include "platform/openssl/openssl_cipher.h"

namespace vantrell {

namespace {

constexpr std::int32_t kStartupStepMs = 100;
constexpr std::int32_t kModeMs = 50;
constexpr std::int32_t kClockMs = 25;

}  // namespace

Program::Program(const Clock& clock, Timers& timers, DataFiles& files)
    : loop_(clock),
      flushesCompleted_(kernel_.flushCompletions(loop_.queue())),
      timers_(timers),
      clock_(clock),
      files_(files),
      toolbox_(loop_, kernel_, clock_),
      entry_(kernel_, host_.programFolder()),
      lines_(kernel_, state_.AppFolder, temporaryFolder()),
      window_(lines_, toolbox_),
      weeklyWindow_(&window_),
      place_(window_, tray_),
      notices_(notifier_, clock_, window_, place_),
      boxes_(loop_.queue(), &window_),
      database_(loop_),
      passwords_(loop_.queue(), database_, boxes_, state_,
                 [this](const Path& path) { return toolbox_.kindOf(path) == EntryKind::regularFile; }),
      passwordEditor_(passwords_, passwordWindow_, boxes_, state_, loop_.queue()),
      settings_(state_, files_, clock_),
      backup_({state_, settings_, toolbox_, files_, databaseCopier_, boxes_, loop_, clock_,
               [this] { passwords_.closeStoreObjects(); }, suppliedPasswordFile()}),
      log_(state_, window_, files_, clock_),
      report_(state_, window_, log_),
      timRun_(timers_.create("timRun", [this] { controller_.timRun_Timer(); })),
      timMax_(timers_.create("timMax", [this] { startup_.timMax_Timer(); })),
      tmchkTimer_(timers_.create("tmchkTimer", [this] { mode_.tmchkTimer_Timer(); })),
      timCurTime_(timers_.create("timCurTime", [this] { controller_.timCurTime_Timer(); })),
      timDelete_(timers_.create("timDelete", [this] { weekly_.timDelete_Timer(); })),
      timWeeklyClock_(timers_.create("timWeeklyClock", [this] { weeklyDialog_.timClock_Timer(); })),
      mode_(state_, window_, *timRun_),
      weekly_({state_, window_, report_, toolbox_, loop_, clock_, mode_, *timDelete_}),
      weeklyDialog_({state_, weeklyWindow_, settings_, mode_, clock_, *timWeeklyClock_},
                    [this] { weekly_.clockTick(); }),
      backupMenus_(
          {state_, window_, boxes_, loop_, mode_, backup_, passwordLookup(), [this] { startup_.reloadSettings(); }}),
      logReading_(kernel_),
      historyText_(state_, logReading_, loop_, window_),
      history_(state_, toolbox_, loop_, historyText_, window_),
      pass_(
          passParts(), [this] { return std::make_unique<CryptoComponent>(loop_, toolbox_, makeOpensslCipher); },
          passwordLookup()),
      menus_(state_, window_, settings_, boxes_, place_, entry_, loop_.queue()),
      controller_(controllerParts(), [] { QCoreApplication::exit(0); }),
      startup_(controllerParts(), startupParts()),
      cleanUp_(loop_.queue()),
      sessionEnd_([this] { controller_.saveAll(); }, [this] { controller_.closeForGood(); }) {
    timMax_->setInterval(kStartupStepMs);
    tmchkTimer_->setInterval(kModeMs);
    timCurTime_->setInterval(kClockMs);
    weekly_.setPauses([this] { return weeklyDialog_.isOpen(); });
    setEvents();
}

void Program::setEvents() {
    window_.setEvents(&controller_);
    tray_.setEvents(&controller_);
    passwordWindow_.setEvents(&passwordEditor_);
    weeklyWindow_.setEvents(&weeklyDialog_);
}

Program::~Program() {
    weeklyWindow_.setEvents(nullptr);
    passwordWindow_.setEvents(nullptr);
    tray_.setEvents(nullptr);
    window_.setEvents(nullptr);
}

bool Program::start() {
    if (!startup_.load()) return false;
    hearShowRequests();
    const SettingsRecord& settings = state_.settings;
    cleanUp_.start(toolbox_.cleanUpAfterCrash(
        {settings.DestinationFolder, settings.DoneFolder, settings.RejectFolder, state_.AppFolder,
         joinPath(state_.AppFolder, kBackupByHand), joinPath(state_.AppFolder, kBackupOnClose)},
        settings.SourceFolder));
    for (Timer* timer : {timMax_.get(), tmchkTimer_.get(), timCurTime_.get()}) timer->setEnabled(true);
    sessionEnd_.start();
    return true;
}

// A second start of the program leads to one, by way of the helper that it starts.
void Program::hearShowRequests() {
    if (!showRequests_.listen(state_.AppFolder, [this] { place_.show(); })) return;
    showRequested_ = std::make_unique<QtEventWatch>(showRequests_);
}

void Program::endWhenAsked(SignalSource& requests) {
    requests.setAsked([this] { controller_.closeForGood(); });
    endRequested_ = std::make_unique<QtEventWatch>(requests);
}

PassParts Program::passParts() {
    return {state_, window_, report_, log_, settings_, toolbox_, boxes_, loop_, clock_, *timRun_, mode_, notices_};
}

ControllerParts Program::controllerParts() {
    return {state_, window_, report_,          log_,   settings_, boxes_, loop_,  clock_,   host_,          *timRun_,
            mode_,  pass_,   passwordLookup(), place_, tray_,     entry_, menus_, notices_, otherCommands()};
}

OtherCommands Program::otherCommands() {
    OtherCommands others;
    others.editPasswords = [this] { passwordEditor_.open(); };
    others.chooseHistory = [this] { history_.open(); };
    others.backUp = [this] { backupMenus_.mnBackup(); };
    others.restoreSettingsFromUnload = [this] { backupMenus_.mnONLBackup(); };
    others.restoreSettingsFromNormal = [this] { backupMenus_.mnuNBU(); };
    others.restorePasswordsFromUnload = [this] { backupMenus_.mnuRPassOn(); };
    others.restorePasswordsFromNormal = [this] { backupMenus_.mnuPassNormal(); };
    others.scheduleWeeklyDelete = [this] { weeklyDialog_.cmdSched(); };
    others.deleteDoneNow = [this] { weekly_.mnDeleteDone(); };
    others.weeklyClockTick = [this] { weekly_.clockTick(); };
    others.abort = [this] { abortOthers(); };
    others.backUpOnClose = [this] {
        passwords_.closeStoreObjects();
        backup_.onCloseConfigBackup();
    };
    return others;
}

void Program::abortOthers() {
    cleanUp_.abort();
    passwordEditor_.closeNow();
    weekly_.abort();
    weeklyDialog_.abort();
    backupMenus_.abort();
    history_.close();
    historyText_.close();
}

ActivePasswordLookup Program::passwordLookup() {
    return [this] { return lookUpActivePassword(passwords_, state_); };
}

StartupParts Program::startupParts() { return {files_, instance_, controller_, *timMax_, suppliedPasswordFile()}; }

}  // namespace vantrell
