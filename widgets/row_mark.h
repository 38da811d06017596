// SPDX-License-Identifier: MIT
#pragma once

#include <QStyledItemDelegate>

namespace vantrell {

/// Draws the mark of a row: a box, with a tick in it when the row is checked. It grows with the font and has the colour
/// of the text, since the box that some styles draw can hardly be seen on a dark list.
class RowMark final : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The side of the box in pixels.
    [[nodiscard]] static int sideFor(const QFontMetrics& metrics);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace vantrell
