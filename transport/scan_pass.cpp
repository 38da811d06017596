// SPDX-License-Identifier: MIT
#include "transport/scan_pass.h"

#include <utility>

#include "base/date_text.h"
#include "core/file_helpers.h"
#include "core/scan_interval.h"
#include "transport/reject_file.h"

namespace vantrell {

namespace {

constexpr int kMostMachineFaults = 3;
constexpr std::size_t kMostInGroup = 8;
constexpr char kFlushFailed[] = "Files could not be brought to stable storage.";

bool isEncrypted(const Path& path) {
    std::string extension = ExtensionOf(path);
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return extension == "enc";
}

// What a pass holds on to, for as long as its task lives.
class PassScope {
public:
    PassScope(FileToolbox& toolbox, const Path& source) : toolbox_(toolbox) { toolbox_.beginPass(source); }
    PassScope(const PassScope&) = delete;
    PassScope& operator=(const PassScope&) = delete;
    ~PassScope() { toolbox_.endPass(); }

private:
    FileToolbox& toolbox_;
};

}  // namespace

ScanPass::ScanPass(PassParts parts, CryptoFactory makeComponent)
    : p_(parts),
      folders_(parts.toolbox, parts.report, parts.mounts, parts.claim),
      endings_(parts),
      questions_(parts.boxes, parts.notices),
      encryption_(encryptionParts(std::move(makeComponent))) {}

EncryptionParts ScanPass::encryptionParts(CryptoFactory makeComponent) {
    return {p_.state,
            p_.window,
            p_.report,
            p_.log,
            p_.toolbox,
            questions_,
            p_.flushNote,
            std::move(makeComponent),
            [this](const Path& source, const Path& folder, const std::string& ending) {
                return isNamesakes(source, folder, ending);
            },
            [this] { return stopRequested_; }};
}

Result<bool> ScanPass::isNamesakes(const Path& source, const Path& folder, const std::string& ending) const {
    Result<bool> wasMade = p_.toolbox.wasMadeInThisPass(joinPath(folder, FileNameOf(source) + ending));
    if (!wasMade.ok() || wasMade.value()) return wasMade;
    return p_.namesakes.isTaken(p_.toolbox, source, folder, ending);
}

void ScanPass::takeStart(bool once) {
    singlePassWanted_ = once;
    freshStart_ = !once;
    if (once) return;
    stopRequested_ = false;
    p_.window.setStopping(false);
}

Task<void> ScanPass::timRun_Timer() {
    if (std::exchange(freshStart_, false)) stopRequested_ = singlePassWanted_ = false;
    if (!beginsAtStartup()) {
        endStopped();
        co_return;
    }
    if (reportEmptyFolder()) co_return;
    const std::string password = co_await p_.password.find();
    if (password.empty()) co_return reportNoPassword();
    // A lookup can take seconds, in which the operator may have emptied one.
    if (reportEmptyFolder()) co_return;
    co_await searchAndCarry();
}

bool ScanPass::reportEmptyFolder() {
    if (!p_.state.anyFolderIsEmpty()) return false;
    p_.window.setNormalState();
    p_.window.setLabel2(kFolderIsEmpty);
    p_.mode.TurnOffTimRun();
    return true;
}

// The pass of the start takes the mark away, whether it runs or not.
bool ScanPass::beginsAtStartup() {
    const bool isStartupPass = std::exchange(p_.state.StartupPassMarker, false);
    if (isStartupPass && !p_.state.settings.RunContinuallyAtStartup) {
        p_.mode.TurnOffTimRun();
        return false;
    }
    p_.mode.tmchkTimer_Timer();
    return true;
}

void ScanPass::reportNoPassword() {
    p_.noPassword.tell();
    p_.log.logEvent(NoActivePassword::kLine);
    p_.notices.passEnded(Trouble::noPassword, NoActivePassword::kText, 0, Notices::Then::hasStopped);
}

Task<void> ScanPass::searchAndCarry() {
    settings_ = p_.state.settings;
    folders_.begin(settings_);
    singlePass_ = singlePassWanted_;
    machineFaults_ = 0;
    rejected_ = 0;
    isWhole_ = true;
    flushFaultsBefore_ = p_.flushNote.failures();
    p_.timRun.setEnabled(false);
    p_.timRun.setInterval(effectiveIntervalMs(settings_.ScanIntervalMs));

    p_.window.setCaption("ZEP is now searching folders!");
    p_.window.setWaitPointer(true);
    p_.report.showInLabel2("ZEP Is Running at " + named(timeText(p_.clock.now())));
    // From here on, so that Start and Stop mean the same during the search as between two files.
    p_.state.PassInProgress = true;
    p_.mode.tmchkTimer_Timer();
    p_.report.showInLabel2("Please Wait ZEP is searching for files!");
    if (!folders_.check()) {
        endMissingFolders();
        co_return;
    }
    if (!folders_.claimSource()) co_return endPaused(Trouble::folderTaken, folders_.trouble());
    p_.report.showInLabel2("Please Wait Encrypting files.");
    const PassScope scope(p_.toolbox, settings_.SourceFolder);
    files_ = co_await folders_.search([this] { return stopRequested_; },
                                      [](const Path& path) { return !isEncrypted(path); });
    p_.window.setTotalFiles(files_.size());
    co_await noteNamesakes();
    co_await carryFiles();
}

Task<void> ScanPass::noteNamesakes() {
    if (stopRequested_) co_return;
    std::vector<Path> carried;
    for (const Path& path : files_) {
        if (!isEncrypted(path)) carried.push_back(path);
        co_await p_.loop.breathe();
    }
    const Result<> noted =
        co_await p_.namesakes.begin(p_.loop, p_.toolbox, settings_.SourceFolder, carried, !p_.flushNote.stands());
    const Message words = "Files of the same name wait in the Source Folder - FAILED: " +
                          failureWords(noted.ok() ? std::string() : noted.fault().text);
    const std::string before = std::exchange(namesNotStored_, noted.ok() ? std::string() : words.text());
    if (namesNotStored_ != before && !noted.ok()) p_.report.showInPanel1(words);
}

Task<void> ScanPass::carryFiles() {
    leftBefore_ = std::exchange(left_, {});
    if (files_.empty() && folders_.unreadWords().empty() && !stopRequested_) {
        p_.report.showInLabel2("No Records this pass!");
        p_.window.setPanel1("No Records this pass!");
        p_.window.setWaitPointer(false);
    }
    const Next next = co_await carryAll();
    co_await endCarrying(next);
}

Task<ScanPass::Next> ScanPass::carryAll() {
    Lookahead ahead(p_.loop, encryption_);
    Next next = Next::goOn;
    std::size_t index = 0;
    lookAhead(ahead, index);
    while (next == Next::goOn && !flushHasFailed() && !ahead.isEmpty() && !stopRequested_) {
        next = co_await carryNext(ahead);
        if (next == Next::goOn) lookAhead(ahead, index);
        co_await p_.loop.breathe();
    }
    if (next == Next::goOn && stopRequested_ && !files_.empty()) stopAndReport();
    co_return next;
}

// Files that are not known to be safe in Done have been taken back into Source: the operator is told as of a disk that
// fails.
Task<void> ScanPass::endCarrying(Next next) {
    Result<> flushed = co_await p_.toolbox.flushMoves();
    if (!flushed.ok()) p_.report.showInPanel1(failureWords(flushed.fault().text));
    const bool isWhole = isWhole_ && next == Next::goOn && !stopRequested_ && folders_.unreadWords().empty();
    if (isWhole && flushed.ok() && !flushHasFailed()) flushed = co_await settleFlushNote();
    // After a failed flush a file that has left may come back, and its namesakes must be known then.
    if (!p_.flushNote.stands()) p_.namesakes.end();
    if (next == Next::missingFolders) co_return endMissingFolders();
    if (next == Next::noPassword) co_return endWithoutPassword();
    if (next == Next::diskFails) co_return endPaused(Trouble::diskFails, diskFault_);
    if (!flushed.ok() || flushHasFailed())
        co_return endPaused(Trouble::diskFails, flushed.ok() ? kFlushFailed : flushed.fault().text);
    end();
}

// Everything has been carried anew. What a flush had failed for may be in any folder.
Task<Result<>> ScanPass::settleFlushNote() {
    if (!p_.flushNote.stands()) co_return Result<>();
    const Result<> flushed = co_await p_.toolbox.flushFolders(
        {settings_.SourceFolder, settings_.DestinationFolder, settings_.DoneFolder, settings_.RejectFolder});
    if (flushed.ok()) p_.flushNote.clear();
    co_return flushed;
}

void ScanPass::lookAhead(Lookahead& ahead, std::size_t& next) {
    for (; ahead.hasRoom() && next < files_.size(); ++next) {
        const Path path = std::move(files_[next]);
        if (isEncrypted(path)) continue;
        if (p_.namesakes.mustWait(path)) {
            isWhole_ = false;
            continue;
        }
        ahead.add(orderFor(path), next);
    }
}

// Files that are prepared, and that nothing stands in the way of, get their names together, so that one flush of the
// folder serves them all. Whatever else needs to be done or asked comes after those before it are finished.
Task<ScanPass::Next> ScanPass::carryNext(Lookahead& ahead) {
    const std::string password = co_await p_.password.settled();
    if (password.empty()) co_return Next::noPassword;
    std::optional<Lookahead::Item> item = co_await ahead.next();
    if (areFoldersGone()) co_return Next::missingFolders;
    takePassword(*item, password);
    Group group;
    while (item && encryption_.nameAhead(*item->work)) {
        group.push_back(std::move(*item));
        item = nextOfGroup(ahead, group, password);
    }
    if (!group.empty()) {
        const Next next = co_await finishGroup(std::move(group));
        if (next != Next::goOn || !item) co_return next;
        if (stopRequested_) co_return Next::goOn;
    }
    co_return co_await carryOne(std::move(*item));
}

// A file waits in Source when its password is not the one that was active when it was prepared.
void ScanPass::takePassword(Lookahead::Item& item, const std::string& password) {
    EncryptOrder& order = FileEncryption::orderOf(*item.work);
    if (order.password == password) return;
    order.password = password;
    item.work = encryption_.begin(order);
}

std::optional<Lookahead::Item> ScanPass::nextOfGroup(Lookahead& ahead, const Group& group,
                                                     const std::string& password) {
    const bool isPasswordKnown = !p_.password.isBeingLookedUp() && p_.password.known() == password;
    if (group.size() >= kMostInGroup || !isPasswordKnown || stopRequested_) return std::nullopt;
    std::optional<Lookahead::Item> item = ahead.readyOne();
    if (item) takePassword(*item, password);
    return item;
}

Task<ScanPass::Next> ScanPass::finishGroup(Group group) {
    std::vector<FileEncryption::Work*> named;
    for (const Lookahead::Item& item : group) named.push_back(item.work.get());
    co_await encryption_.settle(named);
    // What is named is whole: the next pass takes it for what it is.
    if (areFoldersGone()) co_return Next::missingFolders;
    Next next = Next::goOn;
    for (Lookahead::Item& item : group) {
        const Next after = co_await carryOne(std::move(item));
        if (next == Next::goOn) next = after;
        if (next == Next::missingFolders || flushHasFailed()) break;
    }
    co_return next;
}

// What is put under the path of a folder whose share has gone is hidden when the share comes back.
bool ScanPass::areFoldersGone() {
    p_.toolbox.lookAgain();
    return folders_.isOneAway() && !folders_.check();
}

void ScanPass::stopAndReport() {
    singlePassWanted_ = false;
    p_.report.showInLabel2("User has Stopped Process!D");
}

Task<ScanPass::Next> ScanPass::carryOne(Lookahead::Item item) {
    p_.window.setPassProgress(item.index, files_.size());
    Path path = FileEncryption::orderOf(*item.work).sourcePath;
    const std::string name = FileNameOf(path);
    p_.window.setMode(Mode::scanning);
    p_.window.setCurrentFile(name);
    p_.window.setLastFile(name);
    EncryptResult result = co_await encryption_.finish(std::move(item.work));
    switch (result.outcome) {
        case EncryptOutcome::withdrawn:
            isWhole_ = false;
            co_return unlessStopped();
        case EncryptOutcome::inUse:
            co_return afterFileInUse(path, *result.report);
        case EncryptOutcome::failed:
            co_return co_await afterFailure(std::move(path), std::move(result));
        case EncryptOutcome::carried:
            break;
    }
    co_return afterCarrying(path, result);
}

ScanPass::Next ScanPass::afterCarrying(const Path& path, const EncryptResult& result) {
    countCarried();
    if (!result.fault) {
        p_.namesakes.carried(path);
        result.report->speak();
        machineFaults_ = 0;
        return Next::goOn;
    }
    if (result.fault->isTheMachines()) return afterMachineFault({}, *result.fault, *result.report);
    leave(path, result.fault->text, *result.report);
    if (!folders_.check()) return Next::missingFolders;
    machineFaults_ = 0;
    return Next::goOn;
}

EncryptOrder ScanPass::orderFor(const Path& path) const {
    EncryptOrder order;
    order.sourcePath = path;
    order.password = p_.password.known();
    order.destinationFolder = settings_.DestinationFolder;
    order.doneFolder = settings_.DoneFolder;
    order.rejectFolder = settings_.RejectFolder;
    if (const auto left = leftBefore_.find(path); left != leftBefore_.end()) order.leftBefore = left->second;
    return order;
}

void ScanPass::countCarried() { p_.window.setProcessedCount(++processed_); }

void ScanPass::leave(const Path& path, const std::string& how, FileReport& report) {
    isWhole_ = false;
    left_[path] = how;
    report.left(how);
}

ScanPass::Next ScanPass::afterFileInUse(const Path& path, FileReport& report) {
    reportNotEncrypted(path, report);
    leave(path, "in use", report);
    return Next::goOn;
}

// The fault that keeps it in Source, if it stays there.
Task<std::optional<Fault>> ScanPass::reject(const Path& path, EncryptResult& result) {
    const Result<> rejected =
        co_await rejectFile({p_.toolbox, *result.report, p_.clock, path, settings_.RejectFolder, result.held.get()});
    if (!rejected.ok()) co_return rejected.fault();
    ++rejected_;
    p_.namesakes.rejected(path);
    co_return std::nullopt;
}

Task<ScanPass::Next> ScanPass::afterFailure(Path path, EncryptResult result) {
    FileReport& report = *result.report;
    std::optional<Fault> fault = result.fault;
    // A folder that is gone, or a full disk, is not the file's fault: rejecting would empty the source folder.
    const bool folderIsGone = !folders_.check();
    const bool isTheMachines = fault && fault->isTheMachines();
    if (!folderIsGone && !isTheMachines && FileExists(p_.toolbox, path)) {
        const Result<> unchanged = result.held ? result.held->verify() : Result<>();
        if (unchanged.failedWith(FaultKind::inUse)) co_return afterFileInUse(path, report);
        fault = co_await reject(path, result);
        if (fault && fault->kind == FaultKind::inUse) co_return afterFileInUse(path, report);
    }
    if (fault && fault->isTheMachines()) co_return afterMachineFault(path, *fault, report);
    machineFaults_ = 0;
    reportNotEncrypted(path, report);
    if (fault && !folderIsGone)
        leave(path, fault->text, report);
    else
        report.speak();
    if (folderIsGone) co_return Next::missingFolders;
    if (!singlePass_) co_return unlessStopped();
    stopAndReport();
    co_return Next::over;
}

ScanPass::Next ScanPass::unlessStopped() {
    if (!stopRequested_) return Next::goOn;
    stopAndReport();
    return Next::over;
}

// The file stays where it is and the pass goes on, but not for ever: the next tick tries again.
ScanPass::Next ScanPass::afterMachineFault(const Path& path, const Fault& fault, FileReport& report) {
    isWhole_ = false;
    report.speak();
    if (!path.empty()) reportNotEncrypted(path, report);
    ++machineFaults_;
    const bool isOver =
        fault.kind == FaultKind::deviceFailing || machineFaults_ >= kMostMachineFaults || flushHasFailed();
    if (!isOver || stopRequested_) return unlessStopped();
    diskFault_ = fault.text;
    return Next::diskFails;
}

void ScanPass::reportNotEncrypted(const Path& path, FileReport& report) {
    report.showInPanel1("File " + named(path) + " did not encrypt!");
}

void ScanPass::requestStop() {
    singlePassWanted_ = false;
    stopRequested_ = true;
    p_.window.setStopping(true);
    questions_.withdraw();
}

void ScanPass::passHasFailed() {
    clear();
    passWasAborted();
    p_.window.setCaption(PassEndings::kProblem);
    p_.mode.TurnOffTimRun();
}

void ScanPass::passWasAborted() {
    stopRequested_ = false;
    p_.state.PassInProgress = false;
    p_.window.setWaitPointer(false);
    p_.window.clearProgress();
}

void ScanPass::end() {
    const std::string& words = folders_.unreadWords();
    endPaused(words.empty() ? Trouble::none : Trouble::folderUnread, words);
}

void ScanPass::endPaused(Trouble trouble, const std::string& words) {
    if (stopRequested_) return endStopped();
    clear();
    // A single pass is over when it has ended, however it did.
    endings_.paused(!singlePass_, trouble, words, std::exchange(rejected_, 0));
}

void ScanPass::endStopped() {
    clear();
    endings_.stopped(std::exchange(rejected_, 0));
}

void ScanPass::endWithoutPassword() {
    reportNoPassword();
    clear();
    endings_.noPassword(std::exchange(rejected_, 0));
}

void ScanPass::endMissingFolders() {
    if (folders_.mayComeBack()) return endPaused(Trouble::folderGone, folders_.trouble());
    clear();
    endings_.missingFolders(folders_.trouble(), std::exchange(rejected_, 0));
}

void ScanPass::clear() {
    stopRequested_ = false;
    singlePassWanted_ = false;
    files_ = {};
}

}  // namespace vantrell
