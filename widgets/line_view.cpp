// SPDX-License-Identifier: MIT
#include "widgets/line_view.h"

#include <QAction>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
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

LineView::LineView(LineSource& lines, QWidget* parent)
    : QListView(parent), lines_(lines), model_(lines), take_([this] { takeWaiting(); }) {
    setUniformItemSizes(true);
    setLayoutDirection(Qt::LeftToRight);  // the lines are English and hold paths
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideNone);
    measureBytes();
    setModel(&model_);
    addCopyMenu();
}

void LineView::addCopyMenu() {
    auto* copy = new QAction(tr("&Copy"), this);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &LineView::askForCopy);
    auto* all = new QAction(tr("Select &All"), this);
    all->setShortcut(QKeySequence::SelectAll);
    all->setShortcutContext(Qt::WidgetShortcut);
    connect(all, &QAction::triggered, this, &LineView::selectAll);
    addActions({copy, all});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void LineView::followEnd() {
    QScrollBar* bar = verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, [this, bar](int value) { isAtEnd_ = value == bar->maximum(); });
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int maximum) {
        if (isAtEnd_) bar->setValue(maximum);
    });
}

void LineView::linesJoined() {
    if (isVisible()) take_.request();
}

void LineView::takeWaiting() {
    takeNew();
    // The view lays out all its rows whenever some join, about 40 ms for a million: then twice a second is enough.
    take_.setPause(std::max(kThrottlePause, std::chrono::milliseconds(rows() / 2000)));
    Q_EMIT linesTaken();
}

void LineView::takeNew() {
    const std::size_t widest = lines_.widestLine();
    if (widest < lines_.size() && (widest != widestLine_ || widestText_.isEmpty())) {
        widestLine_ = widest;
        widestText_ = QString::fromStdString(lines_.line(widest));
    }
    resizeLines();
    model_.takeNew();
}

void LineView::startOver() {
    widestText_.clear();
    resizeLines();
    model_.startOver();
}

void LineView::measureBytes() {
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
    lines_.setByteWidths(widths);
    resizeLines();
}

void LineView::resizeLines() {
    const int height = fontMetrics().height();
    model_.setLineSize({fontMetrics().horizontalAdvance(widestText_) + height, height + 2});
}

std::vector<LineRange> LineView::selectedLines() const {
    std::vector<LineRange> ranges;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        ranges.push_back({static_cast<std::size_t>(range.top()), static_cast<std::size_t>(range.bottom())});
    std::sort(ranges.begin(), ranges.end(), [](const LineRange& a, const LineRange& b) { return a.first < b.first; });
    return ranges;
}

QString LineView::selectedText() const {
    std::string text;
    for (const LineRange& range : selectedLines())
        for (std::size_t line = range.first; line <= range.last; ++line) text += lines_.line(line) + '\n';
    if (!text.empty()) text.pop_back();
    return QString::fromStdString(text);
}

void LineView::askForCopy() {
    if (selectionModel()->hasSelection()) Q_EMIT copyAsked();
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

// Qt's own list would copy the current line alone.
void LineView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return askForCopy();
    QListView::keyPressEvent(event);
}

void LineView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
    measureBytes();
    scheduleDelayedItemsLayout();
}

void LineView::showEvent(QShowEvent* event) {
    takeNew();
    QListView::showEvent(event);
}

QSize LineView::minimumSizeHint() const { return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 6}; }

}  // namespace vantrell
