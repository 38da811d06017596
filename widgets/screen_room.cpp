// SPDX-License-Identifier: MIT
#include "widgets/screen_room.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>
#include <QWindow>
#include <algorithm>

namespace vantrell {

namespace {

/// What the desktop draws around the window. It draws that late: until then, what it draws around another one.
QMargins frameOf(const QWidget& window) {
    QMargins frame;
    for (const QWidget* one : QApplication::topLevelWidgets()) {
        if (!one->isVisible() || one->windowHandle() == nullptr) continue;
        const QMargins margins = one->windowHandle()->frameMargins();
        if (margins.top() == 0) continue;
        frame = margins;
        if (one == &window) break;
    }
    return frame;
}

int within(int place, int size, int first, int room) { return std::max(first, std::min(place, first + room - size)); }

}  // namespace

void keepOnScreen(QWidget& window) {
    if (window.isMaximized() || window.isFullScreen() || window.isMinimized()) return;
    const QRect room = window.screen()->availableGeometry();
    const QMargins frame = frameOf(window);
    const QSize around(frame.left() + frame.right(), frame.top() + frame.bottom());
    const QSize size = window.size().boundedTo(room.size() - around).expandedTo(window.minimumSize());
    if (size != window.size()) window.resize(size);
    if (!window.isVisible() && !window.testAttribute(Qt::WA_Moved)) return;
    const QSize whole = window.size() + around;
    const QPoint place(within(window.x(), whole.width(), room.left(), room.width()),
                       within(window.y(), whole.height(), room.top(), room.height()));
    if (place != window.pos()) window.move(place);
}

}  // namespace vantrell
