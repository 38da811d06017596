// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "activitylog/activity_log.h"
#include "core/about_facts.h"
#include "core/program_state.h"

namespace vantrell {

/// What a report about the program is made from.
struct DiagnosticsFacts {
    AboutFacts about;
    /// What the machine says about itself: a title and a value, such as "Desktop" and "XFCE".
    std::vector<std::pair<std::string, std::string>> machine;
    SettingsRecord settings;
    std::vector<LoggedEvent> events;
};

/// A text that helps to find a fault and can be sent to strangers: versions, desktop, settings and the last events.
/// No name of a file or folder, no password and no text of unknown origin is in it. UTF-8, lines end with LF.
[[nodiscard]] std::string diagnosticsText(const DiagnosticsFacts& facts);

}  // namespace vantrell
