// SPDX-License-Identifier: MIT
#include "mainwindow/system_information.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vantrell {

namespace {

struct Program {
    std::string_view desktop;  ///< a name as in XDG_CURRENT_DESKTOP
    const char* name;
    const char* argument;
};

// The newer program of a desktop stands first. All are tried in this order when the desktop's own are not there.
constexpr std::array kPrograms{Program{"GNOME", "gnome-control-center", "info-overview"},
                               Program{"KDE", "kinfocenter", nullptr},
                               Program{"XFCE", "xfce4-about", nullptr},
                               Program{"MATE", "mate-system-monitor", nullptr},
                               Program{"X-Cinnamon", "cinnamon-settings", "info"},
                               Program{"LXQt", "lxqt-about", nullptr},
                               Program{"", "hardinfo2", nullptr},
                               Program{"", "hardinfo", nullptr},
                               Program{"GNOME", "gnome-system-monitor", nullptr}};

// XDG_CURRENT_DESKTOP: names separated by colons.
bool names(std::string_view desktops, std::string_view wanted) {
    while (!desktops.empty()) {
        const std::string_view one = desktops.substr(0, desktops.find(':'));
        if (one == wanted) return true;
        desktops.remove_prefix(std::min(one.size() + 1, desktops.size()));
    }
    return false;
}

}  // namespace

bool startSystemInformation(Host& host) {
    const std::string desktops = host.environment("XDG_CURRENT_DESKTOP");
    const auto starts = [&](const Program& program) {
        std::vector<std::string> arguments;
        if (program.argument != nullptr) arguments.emplace_back(program.argument);
        return host.startFromSearchPath(program.name, arguments);
    };
    const auto isOwn = [&](const Program& program) { return names(desktops, program.desktop); };
    return std::any_of(kPrograms.begin(), kPrograms.end(), [&](auto& one) { return isOwn(one) && starts(one); }) ||
           std::any_of(kPrograms.begin(), kPrograms.end(), [&](auto& one) { return !isOwn(one) && starts(one); });
}

}  // namespace vantrell
