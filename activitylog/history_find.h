// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/line_source.h"
#include "platform/event_loop.h"
#include "task/task_group.h"

namespace vantrell {

class HistoryLines;

/// How far the search has come.
struct FindState {
    std::size_t matches = 0;   ///< the number of lines found so far that hold the text
    std::size_t position = 0;  ///< which of them is shown, from 1 on; 0: none yet
    bool isUnderWay = false;
    bool isSearching = false;  ///< there is something to look for
};

/// What the search needs of the reading window.
class HistoryFindView {
public:
    HistoryFindView() = default;
    HistoryFindView(const HistoryFindView&) = delete;
    HistoryFindView& operator=(const HistoryFindView&) = delete;
    virtual ~HistoryFindView() = default;

    virtual void showMatch(std::size_t line) = 0;
    virtual void showFindState(const FindState& state) = 0;
};

/// Finds the lines that hold a text, without making the window wait. Small and capital letters of the English alphabet
/// count as the same; every other character matches only itself. The text is looked for in the lines as they are shown.
class HistoryFind {
public:
    HistoryFind(EventLoop& loop, const HistoryLines& lines, HistoryFindView& view);

    /// Looks for a text (UTF-8) anew; an empty one ends the search. The first line that is shown is the first match
    /// from line `from` on, else the first of all.
    void find(const std::string& text, std::size_t from);
    /// Shows the next or the previous match. After the last match comes the first one.
    void findNext() { step(1); }
    void findPrevious() { step(-1); }
    /// To be called when lines have joined the source, so that these are searched as well.
    void linesJoined();
    /// Ends the search and forgets its text.
    void clear();

private:
    Task<void> search();
    void searchBlock();
    void step(int direction);
    void show(std::size_t match);
    void report();

    EventLoop& loop_;
    const HistoryLines& lines_;
    HistoryFindView& view_;
    std::string text_;
    std::size_t from_ = 0;
    std::size_t searched_ = 0;  ///< lines that were looked at
    std::vector<std::size_t> matches_;
    FindState state_;
    TaskGroup tasks_;
};

}  // namespace vantrell
