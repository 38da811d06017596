// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "activitylog/activity_log.h"
#include "core/main_window.h"
#include "core/program_state.h"

namespace vantrell {

/// Shows what happens in one of the two status places of the main window, and logs what was shown.
class StatusReport {
public:
    StatusReport(ProgramState& state, MainWindow& window, ActivityLog& log)
        : state_(state), window_(window), log_(log) {}

    void showInLabel2(const Message& message) {
        window_.setLabel2(message.text());
        logStatus(message);
    }
    void showInPanel1(const Message& message) {
        window_.setPanel1(message.text());
        logStatus(message);
    }

private:
    void logStatus(const Message& message) {
        state_.StatusText = message.text();
        log_.logEvent(message);
        state_.StatusText.clear();
    }

    ProgramState& state_;
    MainWindow& window_;
    ActivityLog& log_;
};

}  // namespace vantrell
