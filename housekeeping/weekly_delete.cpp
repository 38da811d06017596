// SPDX-License-Identifier: MIT
#include "housekeeping/weekly_delete.h"

#include <utility>

namespace vantrell {

namespace {

constexpr std::int32_t kArmedMs = 10;

constexpr char kDaysAreNotSet[] = "Weekly Delete: the days old are not set (7 to 14). Nothing is deleted.";
constexpr char kClockHasJumped[] =
    "Weekly Delete is held back: the computer's clock has been set by more than a day. Please check the date, then "
    "choose \"Manually Delete Done Files\" or start the program again.";

}  // namespace

WeeklyDelete::WeeklyDelete(WeeklyDeleteParts parts) : p_(parts), watch_(parts.clock), tasks_(parts.loop.queue()) {}

void WeeklyDelete::clockTick() {
    watch_.look();
    const SettingsRecord& settings = p_.state.settings;
    p_.window.setSchedule(scheduleText(settings));
    if (!schedule_.takeDue(settings, p_.clock.now())) return;
    if (!daysOldAreSet(settings)) return p_.report.showInPanel1(kDaysAreNotSet);
    if (watch_.hasJumped()) return p_.report.showInPanel1(kClockHasJumped);
    p_.timDelete.setInterval(kArmedMs);
    p_.timDelete.setEnabled(true);
}

void WeeklyDelete::mnDeleteDone() {
    if (!mayBegin()) return;
    if (daysOldAreSet(p_.state.settings)) watch_.accept();
    timDelete_Timer();
}

bool WeeklyDelete::mayBegin() { return tasks_.isIdle() && !p_.state.ClosingForGood; }

void WeeklyDelete::timDelete_Timer() {
    if (!mayBegin()) return;
    p_.mode.TurnOffTimRun();
    p_.timDelete.setEnabled(false);
    p_.timDelete.setInterval(0);
    tasks_.start(deleteOnce());
}

void WeeklyDelete::abort() {
    p_.timDelete.setEnabled(false);
    tasks_.abort();
}

Task<void> WeeklyDelete::deleteOnce() {
    const bool passDecides = p_.state.PassInProgress;
    const unsigned switches = p_.mode.switches();
    co_await scandirDel(p_.state.settings.DoneFolder + kPathSeparator);
    if (!passDecides) resumeProcessing(switches);
}

// If the operator or a pass has switched processing on or off meanwhile, that decision holds.
void WeeklyDelete::resumeProcessing(unsigned switches) {
    if (p_.state.PassInProgress || p_.mode.switches() != switches) return;
    p_.mode.TurnOnTimRun();
}

Task<void> WeeklyDelete::scandirDel(Path folder) {
    if (folder == Path(1, kPathSeparator)) co_return;
    // As long as something else is mounted there, or nothing, the Done folder is not there.
    if (p_.mounts.isAnother(p_.state.settings.DoneFolder, p_.toolbox.mountUnder(folder))) co_return;
    if (const std::optional<Message> reason = reasonNotTo(folder)) co_return p_.report.showInPanel1(*reason);
    const auto today = localDay(p_.clock.now());
    const auto cutOff = today - std::chrono::days(p_.state.settings.WeeklyDeleteDaysOld);
    const std::vector<Path> names = co_await p_.toolbox.listFiles(folder);
    for (const Path& name : names) {
        const FileDate date = p_.toolbox.fileDate(folder + name);
        if (date == FileDate()) co_return;
        if (localDay(date) < cutOff) co_await deleteFile(folder + name, date);
        co_await p_.loop.breathe();
    }
}

// In the other folders there is no second copy of a file: it is not encrypted yet, or it is the encrypted one.
std::optional<Message> WeeklyDelete::reasonNotTo(const Path& folder) const {
    const SettingsRecord& settings = p_.state.settings;
    if (!daysOldAreSet(settings)) return kDaysAreNotSet;
    const std::pair<Message, const Path&> others[] = {{"Source", settings.SourceFolder},
                                                      {"Destination", settings.DestinationFolder},
                                                      {"Reject", settings.RejectFolder}};
    for (const auto& [name, other] : others) {
        const Result<bool> isSame = p_.toolbox.isSameFolder(folder, other);
        if (!isSame.ok())
            return "Weekly Delete: " + name + " Folder " + named(other) +
                   " - FAILED: " + failureWords(isSame.fault().text) + ". Nothing is deleted.";
        if (!isSame.value()) continue;
        return "Done Folder " + named(settings.DoneFolder) + " is the " + name +
               " Folder too. Weekly Delete deletes nothing.";
    }
    if (p_.toolbox.isFolder(folder) && !p_.toolbox.tellsArrival(folder))
        return "Weekly Delete: the disk of Done Folder " + named(settings.DoneFolder) +
               " does not tell when a file came there. Nothing is deleted.";
    return std::nullopt;
}

// This is logged before the file is removed. If the program ended right after the removal, the log would not show it
// otherwise.
Task<void> WeeklyDelete::deleteFile(Path path, FileDate date) {
    p_.report.showInPanel1("Executing Weekly Delete ...Deleting File: " + named(path));
    const Result<> removed = co_await p_.toolbox.removeFile(path, date);
    if (removed.ok() || removed.failedWith(FaultKind::notThere)) co_return;
    p_.report.showInPanel1("Weekly Delete could not delete File: " + named(path) +
                           " - FAILED: " + failureWords(removed.fault().text));
}

}  // namespace vantrell
