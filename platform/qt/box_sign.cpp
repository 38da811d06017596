// SPDX-License-Identifier: MIT
#include "platform/qt/box_sign.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyle>

namespace vantrell {

namespace {

// In a square of this size, which is then scaled to the sign's.
constexpr double kSide = 32;

/// Seen on light and on dark windows alike: a light one shows the outline, a dark one what is in it.
struct Look {
    QPainterPath shape;
    QColor fill, outline, letter;
    QString text;
    QPointF middle;  // of the letter
    int height;      // of its font
};

QPainterPath disc() {
    QPainterPath path;
    path.addEllipse(QPointF(kSide / 2, kSide / 2), 14.5, 14.5);
    return path;
}

QPainterPath triangle() {
    QPainterPath path;
    path.addPolygon(QPolygonF({{16, 2.5}, {30.5, 28.5}, {1.5, 28.5}}));
    path.closeSubpath();
    return path;
}

Look lookOf(QMessageBox::Icon icon) {
    if (icon == QMessageBox::Warning || icon == QMessageBox::Critical)
        return {triangle(), QColor(0xF5, 0xB8, 0x1F), QColor(0x7A, 0x57, 0x00),
                Qt::black,  QStringLiteral("!"),      {16, 19.5},
                16};
    const QColor blue(0x2F, 0x6F, 0xCF);
    const QString text = icon == QMessageBox::Question ? QStringLiteral("?") : QStringLiteral("i");
    return {disc(), blue, blue.lighter(130), Qt::white, text, {16, 16}, 20};
}

QPainterPath letterOf(const Look& look, const QFont& usual) {
    QFont font = usual;
    font.setBold(true);
    font.setPixelSize(look.height);
    QPainterPath path;
    path.addText({}, font, look.text);
    path.translate(look.middle - path.boundingRect().center());
    return path;
}

}  // namespace

BoxSign::BoxSign(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("boxSign"));
    const int side = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    setFixedSize(side, side);
}

void BoxSign::showIcon(QMessageBox::Icon icon) {
    icon_ = icon;
    update();
}

void BoxSign::paintEvent(QPaintEvent*) {
    const Look look = lookOf(icon_);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / kSide, height() / kSide);
    painter.setBrush(look.fill);
    painter.setPen(QPen(look.outline, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(look.shape);
    painter.fillPath(letterOf(look, font()), look.letter);
}

}  // namespace vantrell
