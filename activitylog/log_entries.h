// SPDX-License-Identifier: MIT
#pragma once

namespace vantrell {

/// The menu entries about the log of today.
class LogEntries {
public:
    LogEntries() = default;
    LogEntries(const LogEntries&) = delete;
    LogEntries& operator=(const LogEntries&) = delete;
    virtual ~LogEntries() = default;

    /// "View Current Log"
    virtual void viewCurrentLogChosen() = 0;
    /// "Turn Off Loging"
    virtual void turnOffLoggingChosen() = 0;
};

/// The menu entry "Select DailyHistory File to View".
class HistoryEntry {
public:
    HistoryEntry() = default;
    HistoryEntry(const HistoryEntry&) = delete;
    HistoryEntry& operator=(const HistoryEntry&) = delete;
    virtual ~HistoryEntry() = default;

    /// Shows the list of past logs, or brings it to the front while it is open.
    virtual void open() = 0;
};

}  // namespace vantrell
