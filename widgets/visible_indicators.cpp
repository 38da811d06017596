// SPDX-License-Identifier: MIT
#include "widgets/visible_indicators.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace vantrell {

namespace {

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

}  // namespace

void VisibleIndicators::install() {
    const QString own = QStringLiteral("fusion");
    if (QApplication::style()->name() == own) QApplication::setStyle(new VisibleIndicators(own));
}

void VisibleIndicators::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                      const QWidget* widget) const {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const bool isRound = element == PE_IndicatorRadioButton;
    if ((!isRound && element != PE_IndicatorCheckBox) || !isDark(option->palette)) return;
    QColor frame = option->palette.color(QPalette::WindowText);
    frame.setAlphaF(0.6F);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(frame);
    painter->setBrush(Qt::NoBrush);
    const QRectF outline = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
    isRound ? painter->drawEllipse(outline) : painter->drawRoundedRect(outline, 2, 2);
    painter->restore();
}

}  // namespace vantrell
