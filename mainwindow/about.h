// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/activity_log.h"
#include "core/main_window.h"
#include "mainwindow/main_window_events.h"
#include "platform/host.h"
#include "platform/message_boxes.h"

namespace vantrell {

/// What the About window says, and what its buttons do.
class About final : public AboutEvents {
public:
    /// Everything outlives it.
    About(const ProgramState& state, MainWindow& window, MessageBoxes& boxes, Host& host, const ActivityLog& log)
        : state_(state), window_(window), boxes_(boxes), host_(host), log_(log) {}

    void aboutChosen() override { window_.showAbout(facts()); }
    void systemInfoPressed() override;
    [[nodiscard]] std::string diagnosticsWanted(const std::string& toolkit) override;

private:
    [[nodiscard]] AboutFacts facts() const;

    const ProgramState& state_;
    MainWindow& window_;
    MessageBoxes& boxes_;
    Host& host_;
    const ActivityLog& log_;
};

}  // namespace vantrell
