// SPDX-License-Identifier: MIT
#include "activitylog/history_list.h"

#include "activitylog/activity_log.h"

namespace vantrell {

HistoryList::HistoryList(ProgramState& state, FileToolbox& toolbox, EventLoop& loop, HistoryListView& view,
                         HistoryOpener& opener)
    : state_(state), toolbox_(toolbox), loop_(loop), view_(view), opener_(opener), fills_(loop.queue()) {}

void HistoryList::FillHistoryList() {
    clear();
    state_.LogFolder = logFolderBelow(state_.AppFolder);
    fills_.start(fill());
}

Task<void> HistoryList::fill() {
    if (toolbox_.isFolder(state_.LogFolder)) {
        const std::vector<Path> found = co_await toolbox_.search({state_.LogFolder, false, {}, {}});
        for (const Path& path : found) {
            AddFilesToList(path.substr(path.rfind(kPathSeparator) + 1));
            co_await loop_.breathe();
        }
    }
    view_.rowsChanged();
    view_.showLoadHistory(true);
}

void HistoryList::AddFilesToList(const Path& fileName) {
    rows_.push_back({fileName, false});
    currentRow_ = rows_.size();
}

void HistoryList::UncheckAllRows() {
    for (Row& row : rows_) row.isChecked = false;
}

void HistoryList::gridClicked(std::size_t row) {
    if (row == 0 || row > rows_.size()) return;
    UncheckAllRows();
    rows_[row - 1].isChecked = true;
    currentRow_ = row;
    view_.marksChanged();
}

void HistoryList::OpenHistoryFile() {
    if (currentRow_ == 0) return;
    const Path fileName = rows_[currentRow_ - 1].fileName;
    if (toolbox_.kindOf(joinPath(state_.LogFolder, fileName)) != EntryKind::regularFile) return;
    opener_.openHistory(fileName);
    view_.closeList();
}

void HistoryList::clear() {
    fills_.abort();
    rows_.clear();
    currentRow_ = 0;
    view_.rowsChanged();
    view_.showLoadHistory(false);
}

}  // namespace vantrell
