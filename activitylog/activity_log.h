// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

#include "base/date_text.h"
#include "base/message.h"
#include "core/main_window.h"
#include "core/program_state.h"
#include "platform/clock.h"
#include "platform/data_files.h"
#include "platform/file_toolbox.h"
#include "platform/line_store.h"

namespace vantrell {

/// An event that was logged, without names (see Message::masked).
struct LoggedEvent {
    WallTime time;
    std::string masked;
};

/// Every event of the program as one line: at once in the activity box, and with the next save in the day's file.
///
/// The day's file is `LogFolder`/yyyymmdd Activity.Log, UTF-8 with CR LF line ends. It holds each line once and in
/// order; a line counts as saved only when its write has succeeded. Lines of a day that are saved after midnight go
/// into the new day's file. What is not saved yet is kept by the store of lines alone.
class ActivityLog {
public:
    /// `lines` is what the activity box shows; only this appends to it.
    ActivityLog(ProgramState& state, LineStore& lines, MainWindow& window, DataFiles& files, const Clock& clock);

    /// Appends a ready line, without its line end. Bytes that are not text are made visible, so it stays one line.
    void appendActivityLine(const std::string& line);
    /// Appends the line made of the current date and time, a blank and the message.
    void logEvent(const Message& message);

    /// Saves the lines that are not saved yet, whatever `LoggingTurnedOff` says.
    void writetofile();
    /// `writetofile` unless logging is turned off.
    void saveWhenOn();
    /// As `saveWhenOn`, and to stable storage.
    void saveForGood();
    /// Why lines could not be saved, in words; empty since a save has succeeded.
    [[nodiscard]] const std::string& trouble() const { return trouble_; }
    /// Once at a start: removes what a crash has torn at the end of today's file and of the newest one of an earlier
    /// day. No other file is looked at; what cannot be read or cut stays as it is.
    Task<void> mendTornEnds(FileToolbox& toolbox);

    /// The last events, at most `kEventsKept`, the newest at the end.
    [[nodiscard]] std::vector<LoggedEvent> lastEvents() const { return {events_.begin(), events_.end()}; }
    static constexpr std::size_t kEventsKept = 50;

    /// The day's file as of the last save.
    [[nodiscard]] const Path& LogFilePath() const { return logFilePath_; }

private:
    void chooseFile();
    Result<> saveSome();
    void report(const Fault& fault);

    ProgramState& state_;
    LineStore& lines_;
    MainWindow& window_;
    DataFiles& files_;
    const Clock& clock_;
    std::size_t firstUnsaved_ = 0;  // the lines from here on are in the store alone
    std::deque<LoggedEvent> events_;
    Path logFilePath_;
    bool fileIsChecked_ = false;  // a torn last line can only come from an earlier run or a failure
    bool fileIsWritten_ = false;
    std::string trouble_;
};

/// The folder of the daily logs below the data folder.
[[nodiscard]] Path logFolderBelow(const Path& appFolder);

}  // namespace vantrell
