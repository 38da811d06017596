// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSet>
#include <QWidget>

#include "core/window_geometry.h"

namespace vantrell {

/// Keeps every window of the application where all of it can be seen, also when screens change, and gives windows the
/// place or the size in which the operator left them.
class WindowKeeper final : public QObject {
public:
    /// What of a window is remembered. Another one's place or size is given by the program itself.
    enum class Remembered { nothing, place, size };

    WindowKeeper(DataFiles& files, Path file);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watchScreens();
    void keepAllOnScreen();
    void shown(QWidget& window);
    void hidden(const QWidget& window);

    WindowGeometries geometries_;
    QSet<QString> restored_;         // in this run
    QSet<const QObject*> unframed_;  // shown, and perhaps without its frame yet
};

}  // namespace vantrell
