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

    void showInLabel2(const std::string& text) {
        window_.setLabel2(text);
        logStatus(text);
    }
    void showInPanel1(const std::string& text) {
        window_.setPanel1(text);
        logStatus(text);
    }

private:
    void logStatus(const std::string& text) {
        state_.StatusText = text;
        log_.logEvent(state_.StatusText);
        state_.StatusText.clear();
    }

    ProgramState& state_;
    MainWindow& window_;
    ActivityLog& log_;
};

}  // namespace vantrell
