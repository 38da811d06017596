// SPDX-License-Identifier: MIT
#pragma once

#include "core/main_window.h"
#include "platform/tray.h"

namespace vantrell {

/// Where the main window is: shown, minimized, or hidden with the tray icon left to bring it back.
class WindowPlace {
public:
    WindowPlace(MainWindow& window, const Tray& tray) : window_(window), tray_(tray) {}

    /// Puts the window out of sight: hides it, or minimizes it where no notification area could bring it back. It never
    /// does both, since window managers report a minimized window late; the window might be shown again by then, and
    /// would be hidden once more.
    void hide() {
        isOutOfSight_ = true;
        isHidden_ = tray_.isAvailable();
        if (isHidden_)
            window_.hideWindow();
        else
            window_.minimizeWindow();
    }
    /// Shows the window in its normal state and brings it to the front.
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
    /// To be called when a notification area has come or gone. When the area has gone, a hidden window is shown again.
    /// When an area comes (panels often start after this program), a window that is minimized only because there was
    /// none is hidden.
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
