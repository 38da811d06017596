// SPDX-License-Identifier: MIT
#include "widgets/mode_mark.h"

#include <QPainter>
#include <algorithm>

namespace vantrell {

ModeMark::ModeMark(QWidget* parent) : QWidget(parent) { setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); }

void ModeMark::showShape(Shape shape) {
    if (shape == shape_) return;
    shape_ = shape;
    update();
}

QSize ModeMark::sizeHint() const { return {fontMetrics().ascent(), fontMetrics().ascent()}; }

// Each pair keeps a contrast of at least 3 : 1 to a window of its own brightness.
QColor ModeMark::colour() const {
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    switch (shape_) {
        case Shape::square:
            return dark ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB3, 0x26, 0x1E);
        case Shape::disc:
            return dark ? QColor(0x82, 0xB1, 0xFF) : QColor(0x15, 0x65, 0xC0);
        case Shape::triangle:
            break;
    }
    return dark ? QColor(0x81, 0xC9, 0x95) : QColor(0x2E, 0x7D, 0x32);
}

void ModeMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour());
    const qreal side = 0.8 * std::min(width(), height());
    const QRectF box((width() - side) / 2, (height() - side) / 2, side, side);
    switch (shape_) {
        case Shape::square:
            painter.drawRect(box.adjusted(side / 12, side / 12, -side / 12, -side / 12));
            break;
        case Shape::disc:
            painter.drawEllipse(box);
            break;
        case Shape::triangle:
            painter.drawPolygon(QPolygonF({box.topLeft(), QPointF(box.right(), box.center().y()), box.bottomLeft()}));
            break;
    }
}

}  // namespace vantrell
