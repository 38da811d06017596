// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// What happens at the icon in the notification area.
class TrayEvents {
public:
    TrayEvents() = default;
    TrayEvents(const TrayEvents&) = delete;
    TrayEvents& operator=(const TrayEvents&) = delete;
    virtual ~TrayEvents() = default;

    /// Left button, once or twice.
    virtual void trayClicked() = 0;
    virtual void editPreferencesChosen() = 0;
    virtual void trayExitChosen() = 0;
    /// A notification area has appeared, or the one there was has gone (a panel that starts late, or crashes).
    virtual void trayAvailabilityChanged(bool available) = 0;
};

/// One icon in the notification area, with a pop-up menu.
class Tray {
public:
    Tray() = default;
    Tray(const Tray&) = delete;
    Tray& operator=(const Tray&) = delete;
    virtual ~Tray() = default;

    /// Asked anew each time: whether there is a notification area now.
    [[nodiscard]] virtual bool isAvailable() const = 0;
    /// Shows the icon as soon as there is an area, and again whenever one comes back. The tip is UTF-8.
    virtual void add(const std::string& tip) = 0;
    virtual void remove() = 0;
};

}  // namespace vantrell
