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

bool isEncrypted(const Path& path) {
    std::string extension = ExtensionOf(path);
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return extension == "enc";
}

}  // namespace

ScanPass::ScanPass(PassParts parts, CryptoFactory makeComponent)
    : p_(parts),
      folders_(parts.toolbox, parts.report),
      endings_(parts),
      questions_(parts.boxes, parts.notices),
      encryption_(parts.state, parts.window, parts.report, parts.log, parts.toolbox, std::move(makeComponent),
                  questions_) {}

void ScanPass::takeStart(bool once) {
    singlePassWanted_ = once;
    freshStart_ = !once;
    if (!once) stopRequested_ = false;
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
    p_.notices.passEnded(Trouble::noPassword, NoActivePassword::kText, 0);
}

Task<void> ScanPass::searchAndCarry() {
    settings_ = p_.state.settings;
    folders_.begin(settings_);
    singlePass_ = singlePassWanted_;
    machineFaults_ = 0;
    rejected_ = 0;
    p_.timRun.setEnabled(false);
    p_.timRun.setInterval(effectiveIntervalMs(settings_.ScanIntervalMs));

    p_.window.setCaption("ZEP is now searching folders!");
    p_.window.setWaitPointer(true);
    p_.report.showInLabel2("ZEP Is Running at " + named(timeText(p_.clock.now())));
    // From here on, so that Start and Stop mean the same during the search as between two files.
    p_.state.PassInProgress = true;
    p_.mode.tmchkTimer_Timer();
    p_.report.showInLabel2("Please Wait ZEP is searching for files!");
    p_.window.repaint();
    if (!folders_.check()) {
        endMissingFolders();
        co_return;
    }
    p_.report.showInLabel2("Please Wait Encrypting files.");
    files_ = co_await folders_.search([this] { return stopRequested_; });
    p_.window.setTotalFiles(files_.size());
    co_await carryFiles();
}

Task<void> ScanPass::carryFiles() {
    carriedNames_.clear();
    inUseBefore_ = std::exchange(inUse_, {});
    if (files_.empty() && folders_.unreadWords().empty() && !stopRequested_) {
        p_.report.showInLabel2("No Records this pass!");
        p_.window.setPanel1("No Records this pass!");
        p_.window.setWaitPointer(false);
    }
    Lookahead ahead(p_.loop, encryption_);
    Next next = Next::goOn;
    std::size_t index = 0;
    lookAhead(ahead, index);
    while (next == Next::goOn && !ahead.isEmpty() && !takeStop()) {
        next = co_await carryNext(ahead);
        if (next == Next::goOn) lookAhead(ahead, index);
        co_await p_.loop.breathe();
    }
    const Result<> flushed = co_await p_.toolbox.flushMoves();
    if (!flushed.ok()) p_.report.showInPanel1(failureWords(flushed.fault().text));
    if (next != Next::goOn) co_return;
    // The files are in Done, and may be back in Source after a crash: the operator is told as of a disk that fails.
    if (flushed.ok() || stopRequested_)
        end();
    else
        endPaused(Trouble::diskFails, flushed.fault().text);
}

void ScanPass::lookAhead(Lookahead& ahead, std::size_t& next) {
    for (; ahead.hasRoom() && next < files_.size(); ++next) {
        const Path path = std::move(files_[next]);
        if (isEncrypted(path)) continue;
        (void)ClearFileAttributes(p_.toolbox, path);
        ahead.add(orderFor(path), next);
    }
}

Task<ScanPass::Next> ScanPass::carryNext(Lookahead& ahead) {
    const std::string password = co_await p_.password.settled();
    if (password.empty()) {
        reportNoPassword();
        clear();
        endings_.noPassword(std::exchange(rejected_, 0));
        co_return Next::end;
    }
    Lookahead::Item item = co_await ahead.next();
    p_.window.setPassProgress(item.index, files_.size());
    EncryptOrder& order = FileEncryption::orderOf(*item.work);
    order.nameWasCarried = carriedNames_.contains(FileNameOf(order.sourcePath));
    if (order.password != password) {
        order.password = password;
        item.work = encryption_.begin(order);
    }
    co_return co_await carryOne(std::move(item.work));
}

bool ScanPass::takeStop() {
    if (!stopRequested_) return false;
    stopAndReport();
    return true;
}

void ScanPass::stopAndReport() {
    singlePassWanted_ = false;
    p_.timRun.setEnabled(false);
    p_.report.showInLabel2("User has Stopped Process!D");
}

Task<ScanPass::Next> ScanPass::carryOne(FileEncryption::WorkPointer work) {
    Path path = FileEncryption::orderOf(*work).sourcePath;
    const std::string name = FileNameOf(path);
    p_.window.setMode(Mode::scanning);
    p_.window.setCurrentFile(name);
    p_.window.setLastFile(name);
    EncryptResult result = co_await encryption_.finish(std::move(work));
    switch (result.outcome) {
        case EncryptOutcome::withdrawn:
            co_return unlessStopped();
        case EncryptOutcome::inUse:
            co_return afterFileInUse(path);
        case EncryptOutcome::failed:
            co_return co_await afterFailure(std::move(path), std::move(result));
        case EncryptOutcome::carried:
            break;
    }
    countCarried(name);
    if (result.fault && result.fault->isTheMachines()) co_return afterMachineFault({}, *result.fault);
    if (result.fault && !folders_.check()) {
        endMissingFolders();
        co_return Next::end;
    }
    machineFaults_ = 0;
    co_return Next::goOn;
}

EncryptOrder ScanPass::orderFor(const Path& path) const {
    EncryptOrder order;
    order.sourcePath = path;
    order.password = p_.password.known();
    order.destinationFolder = settings_.DestinationFolder;
    order.doneFolder = settings_.DoneFolder;
    order.rejectFolder = settings_.RejectFolder;
    order.inUseWasTold = inUseBefore_.contains(path);
    return order;
}

void ScanPass::countCarried(const std::string& name) {
    // Within one folder no name comes twice.
    if (settings_.IncludeSubfolders) carriedNames_.insert(name);
    p_.window.repaint();
    p_.window.setProcessedCount(++processed_);
}

ScanPass::Next ScanPass::afterFileInUse(const Path& path) {
    const bool wasTold = inUseBefore_.contains(path);
    inUse_.insert(path);
    if (!wasTold) reportNotEncrypted(path);
    return Next::goOn;
}

Task<ScanPass::Next> ScanPass::afterFailure(Path path, EncryptResult result) {
    std::optional<Fault> fault = result.fault;
    // A folder that is gone, or a full disk, is not the file's fault: rejecting would empty the source folder.
    const bool folderIsGone = !folders_.check();
    const bool isTheMachines = fault && fault->isTheMachines();
    if (!folderIsGone && !isTheMachines && FileExists(p_.toolbox, path)) {
        const Result<> unchanged = result.held ? result.held->verify() : Result<>();
        if (unchanged.failedWith(FaultKind::inUse)) co_return afterFileInUse(path);
        const Result<> rejected =
            co_await rejectFile({p_.toolbox, p_.report, p_.clock, path, settings_.RejectFolder, result.held.get()});
        if (rejected.ok()) ++rejected_;
        fault = rejected.ok() ? std::nullopt : std::optional(rejected.fault());
    }
    if (fault && fault->isTheMachines()) co_return afterMachineFault(path, *fault);
    machineFaults_ = 0;
    reportNotEncrypted(path);
    if (folderIsGone) {
        endMissingFolders();
        co_return Next::end;
    }
    if (!singlePass_) co_return unlessStopped();
    stopAndReport();
    end();
    co_return Next::end;
}

ScanPass::Next ScanPass::unlessStopped() {
    if (!takeStop()) return Next::goOn;
    end();
    return Next::end;
}

// The file stays where it is and the pass goes on, but not for ever: the next tick tries again.
ScanPass::Next ScanPass::afterMachineFault(const Path& path, const Fault& fault) {
    if (!path.empty()) reportNotEncrypted(path);
    ++machineFaults_;
    if (fault.kind != FaultKind::deviceFailing && machineFaults_ < kMostMachineFaults) return unlessStopped();
    endPaused(Trouble::diskFails, fault.text);
    return Next::end;
}

void ScanPass::reportNotEncrypted(const Path& path) {
    p_.report.showInPanel1("File " + named(path) + " did not encrypt!");
    p_.log.saveWhenOn();
}

void ScanPass::requestStop() {
    singlePassWanted_ = false;
    stopRequested_ = true;
    questions_.withdraw();
}

void ScanPass::passWasAborted() {
    stopRequested_ = false;
    p_.state.PassInProgress = false;
    p_.window.setWaitPointer(false);
    p_.window.clearProgress();
}

void ScanPass::end() {
    if (stopRequested_) return endStopped();
    const std::string& words = folders_.unreadWords();
    endPaused(words.empty() ? Trouble::none : Trouble::folderUnread, words);
}

void ScanPass::endPaused(Trouble trouble, const std::string& words) {
    clear();
    // A single pass is over when it has ended, however it did.
    endings_.paused(!singlePass_, trouble, words, std::exchange(rejected_, 0));
}

void ScanPass::endStopped() {
    clear();
    endings_.stopped(std::exchange(rejected_, 0));
}

void ScanPass::endMissingFolders() {
    clear();
    endings_.missingFolders(folders_.trouble(), std::exchange(rejected_, 0));
}

void ScanPass::clear() {
    stopRequested_ = false;
    singlePassWanted_ = false;
    files_ = {};
}

}  // namespace vantrell
