// SPDX-License-Identifier: MIT
#include "activitylog/log_menus.h"

namespace vantrell {

void LogMenus::turnOffLoggingChosen() {
    if (state_.UiLoading) return;
    if (state_.settings.LoggingTurnedOff) return switchLogging(false, "User Turned on Logging");
    if (!question_.isIdle()) return boxes_.showAgain(standing_);
    question_.start(turnOffLogging());
}

Task<void> LogMenus::turnOffLogging() {
    const Box box{"Logging Options",
                  "If logging is turned off entries in the Activies Log will stop logging and events will not be "
                  "captured. Is this OK?",
                  Buttons::yesNo, true};
    Pending<Answer> question = boxes_.ask(box);
    standing_ = question.ticket();
    const Answer answer = co_await question;
    if (answer == Answer::dismissed) co_return;
    if (answer == Answer::yes)
        switchLogging(true, "User Turned off Logging");
    else
        boxes_.inform({kApplicationTitle, "Ok then this program will keep logging."});
}

void LogMenus::switchLogging(bool turnedOff, const Message& event) {
    state_.settings.LoggingTurnedOff = turnedOff;
    if (!settings_.save()) return;
    window_.showSettings(state_.settings);
    log_.logEvent(event);
    log_.writetofile();
}

}  // namespace vantrell
