// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "activitylog/history_lines.h"
#include "base/path.h"
#include "platform/event_loop.h"
#include "task/task_group.h"

namespace vantrell {

/// What is being read, for the line below the text.
struct HistoryReading {
    Path files;  ///< the names of the opened files, ", " between them
    std::size_t lines = 0;
    bool isUnderWay = false;
    bool isIncomplete = false;  ///< a file, or the rest of one, could not be read
};

/// What the reader needs of the reading window.
class HistoryReaderView {
public:
    HistoryReaderView() = default;
    HistoryReaderView(const HistoryReaderView&) = delete;
    HistoryReaderView& operator=(const HistoryReaderView&) = delete;
    virtual ~HistoryReaderView() = default;

    /// Lines have joined, or the reading has ended. Comes often.
    virtual void readingWentOn() = 0;
    /// The lines that were to be copied, each ended by a line feed; one line alone without. They may be large.
    virtual void takeCopy(std::string text) = 0;
    virtual void refuseCopy() = 0;
};

/// Reads log files in pieces, one file after the other, without holding up the window.
class HistoryReader {
public:
    /// More than this is not copied: every program that looks at the clipboard would have to take it in.
    static constexpr std::size_t kLargestCopy = std::size_t{64} * 1024 * 1024;

    HistoryReader(Path logFolder, const FileReading& files, EventLoop& loop, HistoryReaderView& view);

    /// Appends the lines of a file of the log folder to those that are there. A failure ends the reading of that file.
    void readtheHistoryfile(const Path& fileName);
    /// Ends everything and forgets the lines.
    void clear();

    [[nodiscard]] HistoryLines& lines() { return lines_; }
    [[nodiscard]] const HistoryReading& reading() const { return reading_; }

    /// Gathers the lines for the clipboard. A copy that is under way is given up.
    void copy(std::vector<LineRange> ranges);

private:
    Task<void> readWaiting();
    Task<void> readOne(Path fileName);
    Task<void> gather(std::vector<LineRange> ranges);

    Path logFolder_;
    const FileReading& files_;
    EventLoop& loop_;
    HistoryReaderView& view_;
    HistoryLines lines_;
    HistoryReading reading_;
    std::deque<Path> waiting_;
    TaskGroup reads_;
    TaskGroup copies_;
};

}  // namespace vantrell
