// SPDX-License-Identifier: MIT
#include "activitylog/activity_log.h"

#include "base/display_text.h"

namespace vantrell {

Path logFolderBelow(const Path& appFolder) { return joinPath(appFolder, "Daily Activity Logs"); }

ActivityLog::ActivityLog(ProgramState& state, MainWindow& window, DataFiles& files, const Clock& clock)
    : state_(state), window_(window), files_(files), clock_(clock) {}

void ActivityLog::appendActivityLine(const std::string& line) {
    const std::string shown = displayText(line);
    window_.appendActivity(shown);
    unsaved_ += shown;
    unsaved_ += "\r\n";
}

void ActivityLog::logEvent(const Message& message) {
    const WallTime now = clock_.now();
    events_.push_back({now, message.masked()});
    if (events_.size() > kEventsKept) events_.pop_front();
    appendActivityLine(generalDateText(now) + " " + message.text());
}

void ActivityLog::writetofile() {
    chooseFile();
    if (unsaved_.empty()) return;
    Result<> saved = files_.makePrivateFolders(logFolderBelow(state_.AppFolder));
    if (saved.ok()) saved = files_.appendLines(logFilePath_, unsaved_, !fileIsChecked_);
    if (!saved.ok()) return reportOnce(saved.fault());
    fileIsChecked_ = true;
    failureIsShown_ = false;
    unsaved_.clear();
}

void ActivityLog::saveWhenOn() {
    if (!state_.settings.LoggingTurnedOff) writetofile();
}

void ActivityLog::saveForGood() {
    if (state_.settings.LoggingTurnedOff) return;
    writetofile();
    if (!fileIsChecked_) return;
    const Result<> flushed = files_.flush(logFilePath_);
    if (!flushed.ok()) reportOnce(flushed.fault());
}

void ActivityLog::chooseFile() {
    const Path today = joinPath(logFolderBelow(state_.AppFolder), dayStamp(clock_.now()) + " Activity.Log");
    if (today == logFilePath_) return;
    logFilePath_ = today;
    fileIsChecked_ = false;
}

void ActivityLog::reportOnce(const Fault& fault) {
    if (failureIsShown_) return;
    failureIsShown_ = true;
    window_.setPanel1("The activity log could not be saved: " + fault.text);
}

}  // namespace vantrell
