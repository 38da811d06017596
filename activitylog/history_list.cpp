// SPDX-License-Identifier: MIT
#include "activitylog/history_list.h"

#include <utility>

namespace vantrell {

HistoryList::HistoryList(Path logFolder, FileToolbox& toolbox, EventLoop& loop, HistoryListView& view,
                         HistoryOpener& opener)
    : logFolder_(std::move(logFolder)),
      toolbox_(toolbox),
      loop_(loop),
      view_(view),
      opener_(opener),
      fills_(loop.queue()) {}

void HistoryList::FillHistoryList() {
    clear();
    fills_.start(fill());
}

Task<void> HistoryList::fill() {
    if (toolbox_.isFolder(logFolder_)) {
        const std::vector<Path> found = co_await toolbox_.search({logFolder_, false, {}, {}});
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
    if (toolbox_.kindOf(joinPath(logFolder_, fileName)) != EntryKind::regularFile) return;
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
