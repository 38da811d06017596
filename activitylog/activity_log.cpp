// SPDX-License-Identifier: MIT
#include "activitylog/activity_log.h"

#include <utility>

#include "base/display_text.h"

namespace vantrell {

namespace {

// So much goes to the disk at once. What a crash leaves of it can be cut away whole by the next start.
constexpr std::size_t kPiece = std::size_t{64} << 10U;

constexpr char kEnding[] = " Activity.Log";

std::string fileNameOf(WallTime day) { return dayStamp(day) + kEnding; }

bool isFileOfADay(const std::string& name, const std::string& pattern) {
    return name.size() == pattern.size() && name.ends_with(kEnding) &&
           name.find_first_not_of("0123456789") == name.size() - (sizeof kEnding - 1);
}

}  // namespace

Path logFolderBelow(const Path& appFolder) { return joinPath(appFolder, "Daily Activity Logs"); }

ActivityLog::ActivityLog(ProgramState& state, LineStore& lines, MainWindow& window, DataFiles& files,
                         const Clock& clock)
    : state_(state), lines_(lines), window_(window), files_(files), clock_(clock) {}

void ActivityLog::appendActivityLine(const std::string& line) {
    lines_.append(displayText(line));
    window_.activityJoined();
}

void ActivityLog::logEvent(const Message& message) {
    const WallTime now = clock_.now();
    events_.push_back({now, message.masked()});
    if (events_.size() > kEventsKept) events_.pop_front();
    appendActivityLine(generalDateText(now) + " " + message.text());
}

void ActivityLog::writetofile() {
    chooseFile();
    if (firstUnsaved_ == lines_.size()) return;
    Result<> saved = saveSome();
    if (saved.failedWith(FaultKind::notThere)) saved = files_.makePrivateFolders(logFolderBelow(state_.AppFolder));
    while (saved.ok() && firstUnsaved_ < lines_.size()) saved = saveSome();
    if (!saved.ok()) return report(saved.fault());
    if (!std::exchange(trouble_, {}).empty()) window_.setWarning({});
}

Result<> ActivityLog::saveSome() {
    std::string piece;
    std::size_t end = firstUnsaved_;
    while (end < lines_.size() && piece.size() < kPiece) piece.append(lines_.line(end++)).append("\r\n");
    Result<> saved = files_.appendLines(logFilePath_, piece, !fileIsChecked_);
    fileIsChecked_ = saved.ok();
    if (!saved.ok()) return saved;
    fileIsWritten_ = true;
    firstUnsaved_ = end;
    return saved;
}

void ActivityLog::saveWhenOn() {
    if (!state_.settings.LoggingTurnedOff) writetofile();
}

void ActivityLog::saveForGood() {
    if (state_.settings.LoggingTurnedOff) return;
    writetofile();
    if (!fileIsWritten_) return;
    const Result<> flushed = files_.flush(logFilePath_);
    if (!flushed.ok()) report(flushed.fault());
}

Task<void> ActivityLog::mendTornEnds(FileToolbox& toolbox) {
    const Path folder = logFolderBelow(state_.AppFolder);
    const std::string today = fileNameOf(clock_.now());
    std::string newest;
    for (const Path& name : co_await toolbox.listFiles(folder))
        if (isFileOfADay(name, today) && name < today && name > newest) newest = name;
    // Today's too: when the day ends before the first line is saved, nobody looks at it any more.
    for (const std::string& name : {newest, today})
        if (!name.empty()) (void)files_.cutTornEnd(joinPath(folder, name));
}

void ActivityLog::chooseFile() {
    const Path today = joinPath(logFolderBelow(state_.AppFolder), fileNameOf(clock_.now()));
    if (today == logFilePath_) return;
    logFilePath_ = today;
    fileIsChecked_ = fileIsWritten_ = false;
}

void ActivityLog::report(const Fault& fault) {
    const std::string words = "The activity log could not be saved: " + fault.text;
    if (trouble_.empty()) window_.setPanel1(words);
    window_.setWarning(words);
    trouble_ = words;
}

}  // namespace vantrell
