// SPDX-License-Identifier: MIT
#include "widgets/row_mark.h"

#include <QApplication>
#include <QPainter>

namespace vantrell {

int RowMark::sideFor(const QFontMetrics& metrics) { return metrics.ascent(); }

void RowMark::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    const int side = sideFor(option.fontMetrics);
    QRectF box(0, 0, side, side);
    box.moveCenter(QRectF(option.rect).center());
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    const QColor colour = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(colour, side / 12.0));
    painter->drawRect(box);
    if (index.data(Qt::CheckStateRole).toInt() == Qt::Checked) {
        painter->setPen(QPen(colour, side / 6.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const auto at = [&box](double x, double y) {
            return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
        };
        const QPointF tick[] = {at(0.22, 0.52), at(0.43, 0.74), at(0.8, 0.28)};
        painter->drawPolyline(tick, 3);
    }
    painter->restore();
}

}  // namespace vantrell
