// SPDX-License-Identifier: MIT
#pragma once

#include "core/main_window.h"
#include "platform/tray.h"

namespace vantrell {

/// Where the main window is: shown, minimized, or hidden with the tray icon left to bring it back.
class WindowPlace {
public:
    WindowPlace(MainWindow& window, const Tray& tray) : window_(window), tray_(tray) {}

    /// Out of sight. Without a notification area nothing could bring the window back, so it is minimized instead. Not
    /// both: window managers report the one late, and a window that was brought back meanwhile would be hidden again.
    void hide() {
        isOutOfSight_ = true;
        isHidden_ = tray_.isAvailable();
        if (isHidden_)
            window_.hideWindow();
        else
            window_.minimizeWindow();
    }
    /// In its normal state and in front.
    void show() {
        isOutOfSight_ = isHidden_ = false;
        window_.setNormalState();
        window_.showWindow();
        window_.bringToFront();
    }
    /// As `show`, in its normal size.
    void restoreWindow() {
        show();
        if (!window_.isMinimized()) window_.setNormalSize();
    }
    /// A window that lives in an area that goes away comes back, and one that is minimized only for want of an area
    /// (panels often start after us) goes into the one that comes.
    void trayAvailabilityChanged(bool available) {
        if (!available && isHidden_) show();
        if (available && isOutOfSight_ && window_.isMinimized()) hide();
    }
    [[nodiscard]] bool isHidden() const { return isHidden_; }

private:
    MainWindow& window_;
    const Tray& tray_;
    bool isOutOfSight_ = false;
    bool isHidden_ = false;
};

}  // namespace vantrell
