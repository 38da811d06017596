// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "base/path.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "task/task_group.h"

namespace vantrell {

/// What the list of log files needs of its window.
class HistoryListView {
public:
    HistoryListView() = default;
    HistoryListView(const HistoryListView&) = delete;
    HistoryListView& operator=(const HistoryListView&) = delete;
    virtual ~HistoryListView() = default;

    /// Rows were added or removed; the current row may be another one.
    virtual void rowsChanged() = 0;
    virtual void marksChanged() = 0;
    virtual void showLoadHistory(bool shown) = 0;
    virtual void closeList() = 0;
};

/// The reading window, as the list knows it.
class HistoryOpener {
public:
    HistoryOpener() = default;
    HistoryOpener(const HistoryOpener&) = delete;
    HistoryOpener& operator=(const HistoryOpener&) = delete;
    virtual ~HistoryOpener() = default;

    /// Shows the reading window and appends the file's lines.
    virtual void openHistory(const Path& fileName) = 0;
};

/// The list of the log files from which one is opened. It is built when its window opens and gone when that closes.
class HistoryList {
public:
    struct Row {
        Path fileName;
        bool isChecked = false;
    };

    HistoryList(Path logFolder, FileToolbox& toolbox, EventLoop& loop, HistoryListView& view, HistoryOpener& opener);

    /// Lists the files of the log folder, whatever their names; those of its sub-folders are left out.
    void FillHistoryList();
    /// Appends a row and makes it the current one.
    void AddFilesToList(const Path& fileName);
    void UncheckAllRows();
    /// Checks the row alone and makes it the current one. File rows count from 1.
    void gridClicked(std::size_t row);
    /// Opens the file of the current row and closes the list; nothing happens when it does not exist any more.
    void OpenHistoryFile();
    /// The window has closed.
    void clear();

    [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
    /// 0 while there is none.
    [[nodiscard]] std::size_t currentRow() const { return currentRow_; }

private:
    Task<void> fill();

    Path logFolder_;
    FileToolbox& toolbox_;
    EventLoop& loop_;
    HistoryListView& view_;
    HistoryOpener& opener_;
    std::vector<Row> rows_;
    std::size_t currentRow_ = 0;
    TaskGroup fills_;
};

}  // namespace vantrell
