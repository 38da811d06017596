// SPDX-License-Identifier: MIT
#include "app/window_keeper.h"

#include <QApplication>
#include <QScreen>
#include <utility>

#include "widgets/screen_room.h"

namespace vantrell {

namespace {

using Remembered = WindowKeeper::Remembered;

Remembered rememberedOf(const QString& window) {
    if (window == QStringLiteral("frmMain")) return Remembered::place;
    const bool hasFreeSize = window == QStringLiteral("frmHistory") || window == QStringLiteral("frmHistoryInfo") ||
                             window == QStringLiteral("frmButton");
    return hasFreeSize ? Remembered::size : Remembered::nothing;
}

/// The window, when this is one; menus and tips find their places themselves.
QWidget* asWindow(QObject* watched) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || !widget->isWindow()) return nullptr;
    const Qt::WindowType type = widget->windowType();
    return type == Qt::Window || type == Qt::Dialog ? widget : nullptr;
}

}  // namespace

WindowKeeper::WindowKeeper(DataFiles& files, Path file) : geometries_(files, std::move(file)) {
    qApp->installEventFilter(this);
    watchScreens();
}

void WindowKeeper::watchScreens() {
    const auto watch = [this](const QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &WindowKeeper::keepAllOnScreen);
    };
    for (const QScreen* screen : QGuiApplication::screens()) watch(screen);
    connect(qApp, &QGuiApplication::screenAdded, this, watch);
    connect(qApp, &QGuiApplication::screenRemoved, this, &WindowKeeper::keepAllOnScreen, Qt::QueuedConnection);
}

void WindowKeeper::keepAllOnScreen() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && asWindow(window) != nullptr) keepOnScreen(*window);
}

bool WindowKeeper::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type != QEvent::Show && type != QEvent::Hide && type != QEvent::WindowActivate) return false;
    QWidget* window = asWindow(watched);
    if (window == nullptr) return false;
    if (type == QEvent::Show) {
        if (!event->spontaneous()) shown(*window);
    } else if (type == QEvent::Hide) {
        if (!event->spontaneous()) hidden(*window);
    } else if (unframed_.remove(window)) {
        keepOnScreen(*window);
    }
    return false;
}

void WindowKeeper::shown(QWidget& window) {
    unframed_.insert(&window);
    const QString name = window.objectName();
    const Remembered remembered = rememberedOf(name);
    if (remembered != Remembered::nothing && !restored_.contains(name)) {
        restored_.insert(name);
        if (const std::optional<WindowGeometry> before = geometries_.of(name.toStdString())) {
            if (remembered == Remembered::place) window.move(before->left, before->top);
            if (remembered == Remembered::size) window.resize(before->width, before->height);
        }
    }
    keepOnScreen(window);
}

void WindowKeeper::hidden(const QWidget& window) {
    unframed_.remove(&window);
    const bool isInNormalState = !window.isMaximized() && !window.isFullScreen() && !window.isMinimized();
    if (rememberedOf(window.objectName()) == Remembered::nothing || !isInNormalState) return;
    geometries_.keep(window.objectName().toStdString(), {window.x(), window.y(), window.width(), window.height()});
}

}  // namespace vantrell
