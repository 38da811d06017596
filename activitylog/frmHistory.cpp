// SPDX-License-Identifier: MIT
#include "activitylog/frmHistory.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/qt/qt_text.h"
#include "widgets/row_mark.h"
#include "widgets/wide_button.h"

namespace vantrell {

namespace {

// 4000 and 250 twips, at 15 twips a pixel.
constexpr int kNameWidth = 267;
constexpr int kMarkWidth = 17;
constexpr int kRowsInSight = 16;

int asRow(const QModelIndex& index) { return index.row() + 1; }

}  // namespace

void frmHistoryRows::takeRows() {
    beginResetModel();
    rows_ = static_cast<int>(list_.rows().size());
    endResetModel();
}

void frmHistoryRows::takeMarks() {
    if (rows_ > 0) dataChanged(index(0, markColumn), index(rows_ - 1, markColumn), {Qt::CheckStateRole});
}

int frmHistoryRows::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int frmHistoryRows::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columnCount_; }

QVariant frmHistoryRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const HistoryList::Row& row = list_.rows()[static_cast<std::size_t>(index.row())];
    if (index.column() == markColumn) {
        if (role == Qt::CheckStateRole) return row.isChecked ? Qt::Checked : Qt::Unchecked;
        return {};
    }
    if (role == Qt::DisplayRole) return shownText(row.fileName);
    if (role == Qt::ToolTipRole) return tipText(shownText(row.fileName));
    return {};
}

QVariant frmHistoryRows::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) return {};
    return section == nameColumn ? tr("Log file") : tr("Chosen");
}

frmHistory::frmHistory(Path logFolder, FileToolbox& toolbox, EventLoop& loop, HistoryOpener& opener,
                       QWidget& mainWindow)
    : QWidget(nullptr, Qt::Window | Qt::WindowStaysOnTopHint),
      mainWindow_(mainWindow),
      list_(std::move(logFolder), toolbox, loop, *this, opener),
      rows_(list_) {
    setObjectName(QStringLiteral("frmHistory"));
    setWindowTitle(tr("History"));
    makeGrid();
    LoadHistory_ = new WideButton(tr("&Load Selected History"), this);
    LoadHistory_->setObjectName(QStringLiteral("LoadHistory"));
    LoadHistory_->hide();
    cmdExit_ = new QPushButton(tr("E&xit"), this);
    cmdExit_->setAccessibleDescription(tr("Closes this window"));
    cmdExit_->setObjectName(QStringLiteral("cmdExit"));
    for (QPushButton* button : {LoadHistory_, cmdExit_}) button->setAutoDefault(true);
    arrange();
    connect(LoadHistory_, &QPushButton::clicked, this, [this] { list_.OpenHistoryFile(); });
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);
    for (const QKeySequence& key : {QKeySequence(Qt::Key_Escape), QKeySequence(Qt::CTRL | Qt::Key_W)})
        connect(new QShortcut(key, this), &QShortcut::activated, this, &QWidget::close);
}

frmHistory::~frmHistory() { GridDetails_->setModel(nullptr); }

void frmHistory::makeGrid() {
    GridDetails_ = new QTableView(this);
    GridDetails_->setObjectName(QStringLiteral("GridDetails"));
    GridDetails_->setAccessibleName(tr("Log files"));
    GridDetails_->setModel(&rows_);
    GridDetails_->setSelectionBehavior(QAbstractItemView::SelectRows);
    GridDetails_->setSelectionMode(QAbstractItemView::SingleSelection);
    GridDetails_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    GridDetails_->setTabKeyNavigation(false);
    GridDetails_->setWordWrap(false);
    GridDetails_->setTextElideMode(Qt::ElideMiddle);
    sizeGrid();
    connectGrid();
}

void frmHistory::sizeGrid() {
    GridDetails_->horizontalHeader()->hide();
    GridDetails_->verticalHeader()->hide();
    const int rowHeight = fontMetrics().height() + fontMetrics().height() / 2;
    GridDetails_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    GridDetails_->verticalHeader()->setMinimumSectionSize(rowHeight);
    GridDetails_->verticalHeader()->setDefaultSectionSize(rowHeight);
    GridDetails_->setItemDelegateForColumn(frmHistoryRows::markColumn, new RowMark(this));
    QHeaderView* columns = GridDetails_->horizontalHeader();
    const int mark = RowMark::sideFor(fontMetrics()) + fontMetrics().height() / 2;
    columns->setMinimumSectionSize(kMarkWidth);
    columns->setSectionResizeMode(frmHistoryRows::nameColumn, QHeaderView::Stretch);
    columns->setSectionResizeMode(frmHistoryRows::markColumn, QHeaderView::Fixed);
    columns->resizeSection(frmHistoryRows::markColumn, std::max(kMarkWidth, mark));
    GridDetails_->setMinimumSize(kNameWidth / 2, rowHeight * 4);
}

void frmHistory::connectGrid() {
    connect(GridDetails_, &QTableView::clicked, this, &frmHistory::checkRow);
    connect(GridDetails_, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
        checkRow(index);
        list_.OpenHistoryFile();
    });
    connect(GridDetails_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& now, const QModelIndex&) {
                if (now.isValid() && asRow(now) != static_cast<int>(list_.currentRow())) checkRow(now);
            });
    GridDetails_->installEventFilter(this);
}

void frmHistory::arrange() {
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(LoadHistory_);
    buttons->addStretch(1);
    buttons->addWidget(cmdExit_);
    auto* column = new QVBoxLayout(this);
    column->addWidget(GridDetails_, 1);
    column->addLayout(buttons);
    QSizePolicy keepsItsRoom = LoadHistory_->sizePolicy();
    keepsItsRoom.setRetainSizeWhenHidden(true);
    LoadHistory_->setSizePolicy(keepsItsRoom);

    const int rowHeight = GridDetails_->verticalHeader()->defaultSectionSize();
    const int name = std::max(kNameWidth, fontMetrics().averageCharWidth() * 30);
    const QMargins margins = column->contentsMargins();
    const int beside = margins.left() + margins.right() + GridDetails_->columnWidth(frmHistoryRows::markColumn) +
                       style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 4;
    resize(QSize(name + beside, rowHeight * kRowsInSight + LoadHistory_->sizeHint().height()).expandedTo(sizeHint()));
}

void frmHistory::open() {
    if (!isVisible()) {
        setWindowState(Qt::WindowNoState);
        move(mainWindow_.frameGeometry().topLeft());
        show();
        list_.FillHistoryList();
        GridDetails_->setFocus();
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void frmHistory::checkRow(const QModelIndex& index) { list_.gridClicked(static_cast<std::size_t>(asRow(index))); }

// The arrow keys move the mark along, as a click does. Otherwise the mark would stay with a row that will not be
// opened.
bool frmHistory::eventFilter(QObject* watched, QEvent* event) {
    if (watched != GridDetails_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    const QModelIndex current = GridDetails_->currentIndex();
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_Space:
            if (current.isValid()) checkRow(current);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            list_.OpenHistoryFile();
            return true;
        default:
            return false;
    }
}

void frmHistory::rowsChanged() {
    rows_.takeRows();
    if (list_.currentRow() == 0) return;
    const QModelIndex current = rows_.index(static_cast<int>(list_.currentRow()) - 1, frmHistoryRows::markColumn);
    GridDetails_->setCurrentIndex(current);
    GridDetails_->scrollTo(current);
}

void frmHistory::marksChanged() { rows_.takeMarks(); }

void frmHistory::showLoadHistory(bool shown) { LoadHistory_->setVisible(shown); }

void frmHistory::closeList() { close(); }

void frmHistory::closeEvent(QCloseEvent* event) {
    list_.clear();
    QWidget::closeEvent(event);
}

}  // namespace vantrell
