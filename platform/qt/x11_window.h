// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace vantrell {

/// Lets a window that is shown next appear in its normal state. Under X11 Qt tells the window manager in advance when
/// it minimizes a window, and does not take that back when it is the window manager that restores it: hidden and shown
/// again, the window would be minimized once more. Does nothing elsewhere.
void appearInNormalState(const QWidget& window);

}  // namespace vantrell
