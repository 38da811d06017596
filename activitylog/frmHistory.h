// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QPushButton>
#include <QTableView>
#include <QWidget>

#include "activitylog/history_list.h"
#include "activitylog/log_entries.h"
#include "core/ending.h"

namespace vantrell {

/// The rows of the list: the file's name and its mark.
class frmHistoryRows final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { nameColumn, markColumn, columnCount_ };

    explicit frmHistoryRows(const HistoryList& list) : list_(list) {}

    void takeRows();
    void takeMarks();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const HistoryList& list_;
    int rows_ = 0;
};

/// The list of log files, from which one is opened.
class frmHistory final : public QWidget, public HistoryEntry, public Endable, private HistoryListView {
    Q_OBJECT

public:
    /// All of them must outlive the window; it opens where `mainWindow` stands.
    frmHistory(Path logFolder, FileToolbox& toolbox, EventLoop& loop, HistoryOpener& opener, QWidget& mainWindow);
    ~frmHistory() override;

    void open() override;
    void abort() override { close(); }

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void rowsChanged() override;
    void marksChanged() override;
    void showLoadHistory(bool shown) override;
    void closeList() override;

    void makeGrid();
    void sizeGrid();
    void connectGrid();
    void arrange();
    void checkRow(const QModelIndex& index);

    QWidget& mainWindow_;
    QTableView* GridDetails_ = nullptr;
    QPushButton* LoadHistory_ = nullptr;
    QPushButton* cmdExit_ = nullptr;
    HistoryList list_;
    frmHistoryRows rows_;
};

}  // namespace vantrell
