// SPDX-License-Identifier: MIT
#include "widgets/description_tips.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QProgressBar>
#include <QToolTip>

#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

bool isControl(const QWidget* widget) {
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QProgressBar*>(widget);
}

}  // namespace

DescriptionTips::DescriptionTips() { qApp->installEventFilter(this); }

bool DescriptionTips::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::ToolTip) return false;
    auto* widget = qobject_cast<QWidget*>(watched);
    if (!isControl(widget) || !widget->toolTip().isEmpty()) return false;
    const QString description = widget->accessibleDescription();
    if (description.isEmpty()) return false;
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tipText(description), widget);
    return true;
}

}  // namespace vantrell
