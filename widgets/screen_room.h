// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace vantrell {

/// Makes a window no larger than what its screen has room for, frame included, and moves it so that all of it can be
/// seen. A maximized or minimized window is left alone. A window that has neither been shown nor given a place is only
/// made smaller: where it comes is the business of the desktop.
void keepOnScreen(QWidget& window);

}  // namespace vantrell
