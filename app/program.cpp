// SPDX-License-Identifier: MIT
#include "app/program.h"

#include <QCoreApplication>

#include "passwords/password_lookup.h"
#include "passwords/supplied_password_file.h"
#include "platform/linux/kernel_flush.h"
#include "platform/linux/openssl_component.h"

namespace vantrell {

namespace {

constexpr std::int32_t kStartupStepMs = 100;
constexpr std::int32_t kModeMs = 50;
constexpr std::int32_t kClockMs = 25;

}  // namespace

Program::Program(const Clock& clock, Timers& timers)
    : flush_(makeKernelFlush()),
      loop_(*flush_),
      timers_(timers),
      clock_(clock),
      toolbox_(loop_, clock_),
      entry_(host_.programFolder()),
      lines_(state_.AppFolder),
      window_(lines_),
      place_(window_, tray_),
      notices_(notifier_, clock_, window_, place_),
      boxes_(loop_.queue(), &window_),
      database_(loop_),
      passwords_(loop_.queue(), database_, boxes_, state_,
                 [this](const Path& path) { return toolbox_.kindOf(path) == EntryKind::regularFile; }),
      settings_(state_, files_, clock_),
      log_(state_, window_, files_, clock_),
      report_(state_, window_, log_),
      timRun_(timers_.create("timRun", [this] { controller_.timRun_Timer(); })),
      timMax_(timers_.create("timMax", [this] { startup_.timMax_Timer(); })),
      tmchkTimer_(timers_.create("tmchkTimer", [this] { mode_.tmchkTimer_Timer(); })),
      timCurTime_(timers_.create("timCurTime", [this] { controller_.timCurTime_Timer(); })),
      mode_(state_, window_, *timRun_),
      pass_(
          passParts(), [this] { return std::make_unique<OpensslComponent>(loop_, toolbox_); }, passwordLookup()),
      menus_(state_, window_, settings_, boxes_, place_, entry_, loop_.queue()),
      controller_(controllerParts(), [] { QCoreApplication::exit(0); }),
      startup_(controllerParts(), startupParts()),
      cleanUp_(loop_.queue()),
      sessionEnd_([this] { controller_.saveAll(); }, [this] { closeForGood(); }) {
    timMax_->setInterval(kStartupStepMs);
    tmchkTimer_->setInterval(kModeMs);
    timCurTime_->setInterval(kClockMs);
    window_.setEvents(&controller_);
    tray_.setEvents(&controller_);
}

Program::~Program() {
    tray_.setEvents(nullptr);
    window_.setEvents(nullptr);
}

bool Program::start() {
    if (!startup_.load()) return false;
    hearShowRequests();
    const SettingsRecord& settings = state_.settings;
    cleanUp_.start(toolbox_.cleanUpAfterCrash({settings.DestinationFolder, settings.DoneFolder, settings.RejectFolder},
                                              settings.SourceFolder));
    for (Timer* timer : {timMax_.get(), tmchkTimer_.get(), timCurTime_.get()}) timer->setEnabled(true);
    sessionEnd_.start();
    return true;
}

// A second start of the program leads to one, by way of the helper that it starts.
void Program::hearShowRequests() {
    if (!showRequests_.listen(state_.AppFolder, [this] { place_.show(); })) return;
    showRequested_ = std::make_unique<QSocketNotifier>(showRequests_.descriptor(), QSocketNotifier::Read);
    QObject::connect(showRequested_.get(), &QSocketNotifier::activated, showRequested_.get(),
                     [this] { showRequests_.serve(); });
}

void Program::endWhenAsked(SignalSource& requests) {
    if (requests.descriptor() < 0) return;
    endRequested_ = std::make_unique<QSocketNotifier>(requests.descriptor(), QSocketNotifier::Read);
    QObject::connect(endRequested_.get(), &QSocketNotifier::activated, endRequested_.get(), [this, &requests] {
        if (requests.takeRequest()) closeForGood();
    });
}

void Program::closeForGood() {
    cleanUp_.abort();
    controller_.closeForGood();
}

PassParts Program::passParts() {
    return {state_, window_, report_, log_, settings_, toolbox_, boxes_, loop_, clock_, *timRun_, mode_, notices_};
}

ControllerParts Program::controllerParts() {
    return {state_, window_, report_,          log_,   settings_, boxes_, loop_,  clock_,  host_, *timRun_,
            mode_,  pass_,   passwordLookup(), place_, tray_,     entry_, menus_, notices_};
}

ActivePasswordLookup Program::passwordLookup() {
    return [this] { return lookUpActivePassword(passwords_, state_); };
}

StartupParts Program::startupParts() { return {files_, instance_, controller_, *timMax_, suppliedPasswordFile()}; }

}  // namespace vantrell
