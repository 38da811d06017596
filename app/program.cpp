// SPDX-License-Identifier: MIT
#include "app/program.h"

#include <QCoreApplication>

#include "core/data_folder.h"
#include "platform/desktop/user_folders.h"
#include "platform/openssl/openssl_cipher.h"

namespace vantrell {

Program::Program(const Clock& clock, Timers& timers)
    : loop_(clock),
      flushesCompleted_(kernel_.flushCompletions(loop_.queue())),
      dataFolder_(appFolderBelow(host_.profileFolder())),
      instance_(kernel_),
      toolbox_(loop_, kernel_, clock),
      files_(kernel_),
      entry_(kernel_, host_.programFolder()),
      database_(loop_),
      lines_(kernel_, dataFolder_, temporaryFolder()),
      windowKeeper_(files_, joinPath(dataFolder_, kWindowsFileName)),
      window_(lines_, toolbox_),
      weeklyWindow_(&window_),
      logReading_(kernel_),
      historyText_(logFolderBelow(dataFolder_), logReading_, loop_, window_),
      history_(logFolderBelow(dataFolder_), toolbox_, loop_, historyText_, window_),
      boxes_(loop_.queue(), &window_),
      engine_(machine(clock, timers), screen(), [] { QCoreApplication::exit(0); }),
      listeners_(engine_.listeners(history_)),
      sessionEnd_([this] { engine_.ending.saveAll(); }, [this] { engine_.ending.closeForGood(); }) {
    window_.setListeners(&listeners_);
    tray_.setEvents(&engine_.controller);
    passwordWindow_.setEvents(&engine_.passwordEditor);
    weeklyWindow_.setEvents(&engine_.weeklyDialog);
}

Program::~Program() {
    weeklyWindow_.setEvents(nullptr);
    passwordWindow_.setEvents(nullptr);
    tray_.setEvents(nullptr);
    window_.setListeners(nullptr);
}

Machine Program::machine(const Clock& clock, Timers& timers) {
    return {clock,    timers, loop_,     host_,           instance_, claim_,           entry_,
            toolbox_, files_, database_, databaseCopier_, lines_,    makeOpensslCipher};
}

Screen Program::screen() {
    return {window_, passwordWindow_, weeklyWindow_, boxes_, tray_, notifier_, {&history_, &historyText_}};
}

bool Program::start() {
    if (!engine_.start()) return false;
    hearShowRequests();
    sessionEnd_.start();
    return true;
}

// A second start of the program leads to one, by way of the helper that it starts.
void Program::hearShowRequests() {
    if (!showRequests_.listen(dataFolder_, [this] { engine_.place.show(); })) return;
    showRequested_ = std::make_unique<QtEventWatch>(showRequests_);
}

void Program::endWhenAsked(SignalSource& requests) {
    requests.setAsked([this] { engine_.ending.closeForGood(); });
    endRequested_ = std::make_unique<QtEventWatch>(requests);
}

}  // namespace vantrell
