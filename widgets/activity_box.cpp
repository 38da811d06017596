// SPDX-License-Identifier: MIT
#include "widgets/activity_box.h"

#include <QAction>
#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <vector>

#include "base/display_text.h"

namespace vantrell {

void frmActivityLines::takeNew() {
    const int rows = static_cast<int>(lines_.size());
    if (rows == rows_) return;
    beginInsertRows({}, rows_, rows - 1);
    rows_ = rows;
    endInsertRows();
}

int frmActivityLines::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

QVariant frmActivityLines::data(const QModelIndex& index, int role) const {
    if (role == Qt::SizeHintRole) return lineSize_;
    if (role != Qt::DisplayRole || !index.isValid()) return {};
    return QString::fromStdString(lines_.line(static_cast<std::size_t>(index.row())));
}

ActivityBox::ActivityBox(LineStore& lines, QWidget* parent)
    : QListView(parent), lines_(lines), model_(lines), take_([this] { takeWaiting(); }) {
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTextElideMode(Qt::ElideNone);
    measureCharacters();
    setModel(&model_);

    connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
            [this](int value) { followsEnd_ = value == verticalScrollBar()->maximum(); });
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this](int, int maximum) {
        if (followsEnd_) verticalScrollBar()->setValue(maximum);
    });

    auto* copy = new QAction(tr("Copy"), this);
    connect(copy, &QAction::triggered, this, &ActivityBox::copySelected);
    auto* all = new QAction(tr("Select All"), this);
    connect(all, &QAction::triggered, this, &ActivityBox::selectAll);
    addActions({copy, all});
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ActivityBox::appendLine(const std::string& line) {
    const std::string shown = displayText(line);
    lines_.append(shown);
    measureLine(shown);
    if (isVisible()) take_.request();
}

void ActivityBox::takeWaiting() {
    resizeLines();
    model_.takeNew();
    // The view lays out all its rows whenever some join, about 40 ms for a million: then twice a second is enough.
    take_.setPause(std::max(kThrottlePause, std::chrono::milliseconds(model_.rowCount() / 2000)));
}

void ActivityBox::showEvent(QShowEvent* event) {
    takeWaiting();
    QListView::showEvent(event);
}

void ActivityBox::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::StyleChange) return;
    measureCharacters();
    // All lines would have to be read again; those that were the widest so far are not far from it in any font.
    widest_ = widthOf(widestLine_);
    resizeLines();
    scheduleDelayedItemsLayout();
}

void ActivityBox::measureCharacters() {
    const QFontMetricsF metrics(font());
    for (std::size_t code = 0; code < characterWidths_.size(); ++code) {
        characterWidths_[code] = metrics.horizontalAdvance(QChar(static_cast<char16_t>(code)));
    }
    otherWidth_ = metrics.height();  // a full-width character is about as wide as the line is high
    resizeLines();
}

void ActivityBox::measureLine(const std::string& line) {
    const double width = widthOf(line);
    if (width <= widest_) return;
    widest_ = width;
    widestLine_ = line;
}

// The sum of the characters' own widths, since shaping every line would cost more than all the rest.
double ActivityBox::widthOf(const std::string& line) const {
    double width = 0;
    for (const char byte : line) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x80) {
            width += characterWidths_[code];
        } else if (code >= 0xC0) {
            width += otherWidth_;
        }
    }
    return width;
}

void ActivityBox::resizeLines() {
    const int margins = fontMetrics().height();
    model_.setLineSize({static_cast<int>(std::ceil(widest_)) + margins, fontMetrics().height() + 2});
}

QString ActivityBox::selectedText() const {
    std::vector<std::pair<int, int>> ranges;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        ranges.emplace_back(range.top(), range.bottom());
    }
    std::sort(ranges.begin(), ranges.end());
    std::string text;
    for (const auto& [top, bottom] : ranges) {
        for (int row = top; row <= bottom; ++row) {
            if (!text.empty()) text += '\n';
            text += lines_.line(static_cast<std::size_t>(row));
        }
    }
    return QString::fromStdString(text);
}

void ActivityBox::copySelected() const {
    if (selectionModel()->hasSelection()) QGuiApplication::clipboard()->setText(selectedText());
}

void ActivityBox::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) return copySelected();
    QListView::keyPressEvent(event);
}

QSize ActivityBox::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 6};
}

}  // namespace vantrell
