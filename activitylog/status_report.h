// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/activity_log.h"
#include "core/main_window.h"

namespace vantrell {

/// Shows what happens in one of the two status places of the main window, and logs what was shown.
class StatusReport {
public:
    StatusReport(MainWindow& window, ActivityLog& log) : window_(window), log_(log) {}

    void showInLabel2(const Message& message) {
        window_.setLabel2(message.text());
        log_.logEvent(message);
    }
    void showInPanel1(const Message& message) {
        window_.setPanel1(message.text());
        log_.logEvent(message);
    }

private:
    MainWindow& window_;
    ActivityLog& log_;
};

}  // namespace vantrell
