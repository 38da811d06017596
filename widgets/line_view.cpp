// SPDX-License-Identifier: MIT
#include "widgets/line_view.h"

#include <QAction>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

namespace vantrell {

namespace {

std::uint16_t inUnits(double pixels) {
    return static_cast<std::uint16_t>(std::clamp(std::ceil(pixels * kWidthUnit), 0.0, 65535.0));
}

}  // namespace

void frmLineModel::takeNew() {
    const int rows = static_cast<int>(lines_.size());
    if (rows == rows_) return;
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
}

void frmLineModel::startOver() {
    beginResetModel();
    rows_ = 0;
    endResetModel();
}

int frmLineModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

QVariant frmLineModel::data(const QModelIndex& index, int role) const {
    if (role == Qt::SizeHintRole) return lineSize_;
    if (role != Qt::DisplayRole || !index.isValid()) return {};
    return QString::fromStdString(lines_.line(static_cast<std::size_t>(index.row())));
}

LineView::LineView(const LineSource& lines, QWidget* parent) : QListView(parent), lines_(lines), model_(lines) {
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideNone);
    resizeLines();
    setModel(&model_);

    auto* copy = new QAction(tr("&Copy"), this);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &LineView::copyAsked);
    auto* all = new QAction(tr("Select &All"), this);
    all->setShortcut(QKeySequence::SelectAll);
    all->setShortcutContext(Qt::WidgetShortcut);
    connect(all, &QAction::triggered, this, &LineView::selectAll);
    addActions({copy, all});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void LineView::takeNew(std::size_t widest) {
    if (widest < lines_.size()) widestLine_ = QString::fromStdString(lines_.line(widest));
    resizeLines();
    model_.takeNew();
}

void LineView::startOver() {
    widestLine_.clear();
    resizeLines();
    model_.startOver();
}

ByteWidths LineView::byteWidths() const {
    const QFontMetricsF metrics(font());
    const std::uint16_t escaped = inUnits(metrics.horizontalAdvance(QStringLiteral("\\x00")));
    ByteWidths widths{};
    for (std::size_t byte = 0; byte < widths.size(); ++byte) {
        if (byte < 0x20 || byte == 0x7F) {
            widths[byte] = escaped;
        } else if (byte < 0x80) {
            widths[byte] = inUnits(metrics.horizontalAdvance(QChar(static_cast<char16_t>(byte))));
        } else if (byte >= 0xC0) {
            widths[byte] = inUnits(metrics.height());  // a full-width character is about as wide as the line is high
        }
    }
    widths['\n'] = widths['\r'] = 0;
    return widths;
}

void LineView::resizeLines() {
    const int height = fontMetrics().height();
    model_.setLineSize({fontMetrics().horizontalAdvance(widestLine_) + height, height + 2});
}

std::vector<LineRange> LineView::selectedLines() const {
    std::vector<LineRange> ranges;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        ranges.push_back({static_cast<std::size_t>(range.top()), static_cast<std::size_t>(range.bottom())});
    return ranges;
}

std::size_t LineView::lineInHand() const {
    const QModelIndex current = currentIndex().isValid() ? currentIndex() : indexAt(QPoint(1, 1));
    return current.isValid() ? static_cast<std::size_t>(current.row()) : 0;
}

void LineView::showLine(std::size_t line) {
    const QModelIndex index = model_.index(static_cast<int>(line), 0);
    setCurrentIndex(index);
    const bool isInSight = viewport()->rect().contains(visualRect(index).center());
    const int sideways = horizontalScrollBar()->value();
    if (!isInSight) scrollTo(index, PositionAtCenter);
    horizontalScrollBar()->setValue(sideways);
}

// The shortcuts of the menu's entries are shown there, and they hold when the list has the keyboard.
void LineView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copyAsked();
    QListView::keyPressEvent(event);
}

void LineView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
    // The lines are not read again: the one that was the widest is not far from it in any font.
    resizeLines();
    scheduleDelayedItemsLayout();
    widthsChanged();
}

QSize LineView::minimumSizeHint() const { return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 6}; }

}  // namespace vantrell
