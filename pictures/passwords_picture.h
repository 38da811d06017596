// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>

#include "passwords/frmEDPasswords.h"

namespace vantrell::test {

/// Draws the password editor in its states. `save` is given the window and a name without an ending; the state
/// "passwords" is the one that the user guide shows.
inline void drawPasswords(const std::function<void(QWidget&, const QString&)>& save) {
    frmEDPasswords window;
    window.showControls({true, false, false, true});
    window.showWindow();
    save(window, QStringLiteral("passwords-empty"));
    window.showRows({{"autumn-2025", "False"}, {"Winter-2025", "False"}, {"spring-2026", "True"}});
    window.setEnteredPassword("spring-2026");
    window.setActiveSet(true);
    window.showControls({false, true, true, true});
    save(window, QStringLiteral("passwords"));
    window.showRows({{std::string(60, 'w'), "False"}, {" <b>tab\there</b>", "True"}});
    window.setEnteredPassword(std::string(60, 'w'));
    window.setNote("Only the first 32 characters count.");
    window.showControls({true, true, true, true});
    save(window, QStringLiteral("passwords-long"));
}

}  // namespace vantrell::test
