// SPDX-License-Identifier: MIT
#include "mainwindow/about.h"

#include "mainwindow/diagnostics.h"
#include "mainwindow/system_information.h"

namespace vantrell {

AboutFacts About::facts() const { return {kApplicationTitle, programVersion(), libraryVersions(), state_.AppFolder}; }

void About::systemInfoPressed() {
    if (!startSystemInformation(host_))
        boxes_.inform({kApplicationTitle, "System Information Is Unavailable At This Time"});
}

std::string About::diagnosticsWanted(const std::string& toolkit) {
    return diagnosticsText({facts(),
                            {{"Toolkit", toolkit},
                             {"Desktop", host_.environment("XDG_CURRENT_DESKTOP")},
                             {"Session", host_.environment("XDG_SESSION_TYPE")}},
                            state_.settings,
                            log_.lastEvents()});
}

}  // namespace vantrell
