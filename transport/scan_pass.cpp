// SPDX-License-Identifier: MIT
#include "transport/scan_pass.h"

#include <utility>

#include "base/date_text.h"
#include "core/file_helpers.h"
#include "core/scan_interval.h"

namespace vantrell {

namespace {

constexpr char kFolderIsEmpty[] = "One or all of the folder parameters are missing. Please check below.";
constexpr char kFoldersMissing[] = "Source, Destination or Done Folders are missing";
constexpr int kMostMachineFaults = 3;
constexpr std::chrono::milliseconds kLookupPoll{20};

bool isEncrypted(const Path& path) {
    std::string extension = ExtensionOf(path);
    for (char& c : extension)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return extension == "enc";
}

}  // namespace

ScanPass::ScanPass(PassParts parts, CryptoFactory makeComponent, ActivePasswordLookup lookUpActivePassword)
    : p_(parts),
      questions_(parts.boxes, parts.notices),
      encryption_(parts.state, parts.window, parts.report, parts.log, parts.toolbox, std::move(makeComponent),
                  questions_),
      lookUpActivePassword_(std::move(lookUpActivePassword)) {}

Task<void> ScanPass::timRun_Timer() {
    if (p_.state.FreshStartPending) {
        p_.state.FreshStartPending = false;
        p_.state.StopRequested = false;
        p_.state.SinglePassMode = false;
    }
    if (startsUpWithoutPass()) {
        endStopped();
        co_return;
    }
    if (emptyFolderIsReported()) co_return;
    const bool hasPassword = co_await hasActivePassword();
    // A lookup can take seconds, in which the operator may have emptied one.
    if (!hasPassword || emptyFolderIsReported()) co_return;
    co_await searchAndCarry();
}

bool ScanPass::emptyFolderIsReported() {
    if (!p_.state.anyFolderIsEmpty()) return false;
    p_.window.setNormalState();
    p_.window.setLabel2(kFolderIsEmpty);
    p_.mode.TurnOffTimRun();
    return true;
}

bool ScanPass::startsUpWithoutPass() {
    const bool isStartupPass = std::exchange(p_.state.StartupPassMarker, false);
    if (isStartupPass && !p_.state.settings.RunContinuallyAtStartup) {
        p_.mode.TurnOffTimRun();
        p_.state.StopRequested = true;
        return true;
    }
    p_.state.FreshStartPending = false;
    p_.mode.tmchkTimer_Timer();
    return false;
}

Task<bool> ScanPass::hasActivePassword() {
    if (p_.state.ActivePassword.empty()) co_await lookUpActivePassword_();
    if (!p_.state.ActivePassword.empty()) co_return true;
    reportNoPassword();
    co_return false;
}

// Nobody waits for the answer: a box that stays open for weeks must not keep the state of the program in between.
void ScanPass::reportNoPassword() {
    p_.mode.TurnOffTimRun();
    p_.report.showInLabel2(Message(kNoActivePassword) + ".");
    p_.boxes.inform({kApplicationTitle, kNoActivePassword});
    p_.notices.passEnded(Trouble::noPassword, kNoActivePassword, 0);
}

Task<void> ScanPass::searchAndCarry() {
    settings_ = p_.state.settings;
    singlePass_ = p_.state.SinglePassMode;
    machineFaults_ = 0;
    rejected_ = 0;
    p_.timRun.setEnabled(false);
    p_.timRun.setInterval(effectiveIntervalMs(settings_.ScanIntervalMs));

    p_.window.setCaption("ZEP is now searching folders!");
    p_.window.setWaitPointer(true);
    p_.report.showInLabel2("ZEP Is Running at " + named(timeText(p_.clock.now())));
    p_.state.ScanActive = true;
    // From here on, so that Start and Stop mean the same during the search as between two files.
    p_.state.PassInProgress = true;
    p_.mode.tmchkTimer_Timer();
    p_.report.showInLabel2("Please Wait ZEP is searching for files!");
    p_.window.repaint();
    if (!foldersAreThere()) {
        endMissingFolders();
        co_return;
    }
    p_.report.showInLabel2("Please Wait Encrypting files.");
    co_await searchFiles();
    co_await carryFiles();
}

bool ScanPass::foldersAreThere() {
    const Message source = named(settings_.SourceFolder);
    const Message bypassing = " does not exist bypassing ";
    const Message bypassingSource = bypassing + source + " events!";
    const bool missing =
        missingFolderIsReported(settings_.SourceFolder, "Source Folder " + source + bypassing + "events!") ||
        missingFolderIsReported(settings_.DestinationFolder,
                                "Destination Folder " + named(settings_.DestinationFolder) + bypassingSource) ||
        missingFolderIsReported(settings_.DoneFolder, "Done Folder " + named(settings_.DoneFolder) + bypassingSource) ||
        sourceIsReported(settings_.DoneFolder, "Done Folder ") ||
        sourceIsReported(settings_.RejectFolder, "Reject Folder ");
    if (missing) p_.window.setWaitPointer(false);
    return !missing;
}

bool ScanPass::missingFolderIsReported(const Path& folder, const Message& text) {
    if (p_.toolbox.isFolder(folder)) return false;
    reportFolderTrouble(text);
    return true;
}

// Originals that are moved to where they came from would be found again by every pass.
bool ScanPass::sourceIsReported(const Path& folder, const Message& what) {
    if (!p_.toolbox.isSameFolder(settings_.SourceFolder, folder)) return false;
    reportFolderTrouble(what + named(folder) + " is the Source Folder bypassing events!");
    return true;
}

void ScanPass::reportFolderTrouble(const Message& text) {
    folderTrouble_ = text.text();
    p_.report.showInLabel2(text);
}

Task<void> ScanPass::searchFiles() {
    SearchOrder order;
    order.folder = settings_.SourceFolder;
    order.recurse = settings_.IncludeSubfolders;
    order.notEntered = {settings_.DoneFolder, settings_.RejectFolder};
    order.isStopped = [&state = p_.state] { return state.StopRequested; };
    unreadBefore_ = std::exchange(unread_, {});
    unreadWords_.clear();
    order.notRead = [this](const Path& folder, const Fault& fault) { reportUnread(folder, fault); };
    std::vector<Path> found = co_await p_.toolbox.search(std::move(order));
    found.insert(found.begin(), Path());
    p_.state.FileList = std::move(found);
    p_.window.setTotalFiles(p_.state.FileList.size() - 1);
}

// What stands in it is not encrypted, and nobody would know.
void ScanPass::reportUnread(const Path& folder, const Fault& fault) {
    const Message words = "Folder " + named(folder) + " - FAILED: " + failureWords(fault.text);
    if (unread_.empty()) unreadWords_ = words.text();
    unread_.insert(folder);
    if (!unreadBefore_.contains(folder)) p_.report.showInPanel1(words);
}

Task<void> ScanPass::carryFiles() {
    const std::size_t count = p_.state.FileList.size() - 1;
    carriedNames_.clear();
    inUseBefore_ = std::exchange(inUse_, {});
    if (count == 0 && unread_.empty() && !p_.state.StopRequested) {
        p_.report.showInLabel2("No Records this pass!");
        p_.window.setPanel1("No Records this pass!");
        p_.window.setWaitPointer(false);
    }
    Lookahead ahead(p_.loop, encryption_);
    Next next = Next::goOn;
    std::size_t index = 1;
    lookAhead(ahead, index);
    while (next == Next::goOn && !ahead.isEmpty() && !stopIsTaken()) {
        next = co_await carryNext(ahead);
        if (next == Next::goOn) lookAhead(ahead, index);
        co_await p_.loop.breathe();
    }
    const Result<> flushed = co_await p_.toolbox.flushMoves();
    if (!flushed.ok()) p_.report.showInPanel1(failureWords(flushed.fault().text));
    if (next != Next::goOn) co_return;
    // The files are in Done, and may be back in Source after a crash: the operator is told as of a disk that fails.
    if (flushed.ok() || p_.state.StopRequested)
        end();
    else
        endPaused(Trouble::diskFails, flushed.fault().text);
}

void ScanPass::lookAhead(Lookahead& ahead, std::size_t& next) {
    for (; ahead.hasRoom() && next < p_.state.FileList.size(); ++next) {
        const Path path = std::move(p_.state.FileList[next]);
        if (isEncrypted(path)) continue;
        (void)ClearFileAttributes(p_.toolbox, path);
        ahead.add(orderFor(path), next);
    }
}

Task<ScanPass::Next> ScanPass::carryNext(Lookahead& ahead) {
    // Emptied for a lookup that is still under way, or for good.
    while (p_.state.ActivePassword.empty() && p_.state.UiLoading) co_await p_.loop.after(kLookupPoll);
    if (p_.state.ActivePassword.empty()) {
        reportNoPassword();
        finishEnding(Trouble::noPassword, kNoActivePassword);
        co_return Next::end;
    }
    Lookahead::Item item = co_await ahead.next();
    p_.window.setPassProgress(item.index - 1, p_.state.FileList.size() - 1);
    EncryptOrder& order = FileEncryption::orderOf(*item.work);
    order.nameWasCarried = carriedNames_.contains(FileNameOf(order.sourcePath));
    if (order.password != p_.state.ActivePassword) {
        order.password = p_.state.ActivePassword;
        item.work = encryption_.begin(order);
    }
    co_return co_await carryOne(std::move(item.work));
}

bool ScanPass::stopIsTaken() {
    if (!p_.state.StopRequested) return false;
    stopAndReport();
    return true;
}

void ScanPass::stopAndReport() {
    p_.state.SinglePassMode = false;
    p_.timRun.setEnabled(false);
    p_.report.showInLabel2("User has Stopped Process!D");
}

Task<ScanPass::Next> ScanPass::carryOne(FileEncryption::WorkPointer work) {
    Path path = FileEncryption::orderOf(*work).sourcePath;
    const std::string name = FileNameOf(path);
    p_.window.setModeLabel("SCANNING");
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
    if (result.fault && !foldersAreThere()) {
        endMissingFolders();
        co_return Next::end;
    }
    machineFaults_ = 0;
    co_return Next::goOn;
}

EncryptOrder ScanPass::orderFor(const Path& path) const {
    EncryptOrder order;
    order.sourcePath = path;
    order.password = p_.state.ActivePassword;
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
    p_.state.EncryptFailed = false;
    if (!wasTold) reportNotEncrypted(path);
    return Next::goOn;
}

Task<ScanPass::Next> ScanPass::afterFailure(Path path, EncryptResult result) {
    std::optional<Fault> fault = result.fault;
    // A folder that is gone, or a full disk, is not the file's fault: rejecting would empty the source folder.
    const bool folderIsGone = !foldersAreThere();
    const bool isTheMachines = fault && fault->isTheMachines();
    if (!folderIsGone && !isTheMachines && FileExists(p_.toolbox, path)) {
        const Result<> unchanged = result.held ? result.held->verify() : Result<>();
        if (unchanged.failedWith(FaultKind::inUse)) co_return afterFileInUse(path);
        const Result<> rejected = co_await reject(path, result.held.get());
        fault = rejected.ok() ? std::nullopt : std::optional(rejected.fault());
    }
    if (fault && fault->isTheMachines()) co_return afterMachineFault(path, *fault);
    machineFaults_ = 0;
    reportNotEncrypted(path);
    p_.state.EncryptFailed = false;
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
    if (!stopIsTaken()) return Next::goOn;
    end();
    return Next::end;
}

// The file stays where it is and the pass goes on, but not for ever: the next tick tries again.
ScanPass::Next ScanPass::afterMachineFault(const Path& path, const Fault& fault) {
    if (!path.empty()) reportNotEncrypted(path);
    p_.state.EncryptFailed = false;
    ++machineFaults_;
    if (fault.kind != FaultKind::deviceFailing && machineFaults_ < kMostMachineFaults) return unlessStopped();
    endPaused(Trouble::diskFails, fault.text);
    return Next::end;
}

Task<Result<>> ScanPass::reject(Path path, HeldFile* held) {
    const std::string name = FileNameOf(path);
    Path target = joinPath(settings_.RejectFolder, name);
    bool isThere = false;
    if (p_.toolbox.kindOf(target) != EntryKind::missing) {
        const std::string newName = secondStamp(p_.clock.now()) + "_" + name;
        target = joinPath(settings_.RejectFolder, newName);
        p_.report.showInPanel1("File " + named(path) + " File exists rename file to " + named(newName));
        const Result<> renamed = co_await p_.toolbox.rename(path, target);
        isThere = renamed.ok();
        if (!isThere) p_.report.showInPanel1("File " + named(path) + " did not rename file!");
    }
    p_.state.FileOpSource = path;
    p_.state.FileOpTarget = target;
    Result<> moved;
    if (!isThere) moved = co_await p_.toolbox.move({path, target, Replace::never, held});
    if (moved.ok())
        ++rejected_;
    else
        p_.report.showInPanel1("File " + named(path) + " did not move to reject folder!");
    co_return moved;
}

void ScanPass::reportNotEncrypted(const Path& path) {
    p_.report.showInPanel1("File " + named(path) + " did not encrypt!");
    p_.log.saveWhenOn();
}

void ScanPass::requestStop() {
    p_.state.SinglePassMode = false;
    p_.state.StopRequested = true;
    questions_.withdraw();
}

void ScanPass::passWasAborted() {
    p_.state.UiLoading = false;
    p_.state.StopRequested = false;
    p_.state.ScanActive = false;
    p_.state.PassInProgress = false;
    p_.window.setWaitPointer(false);
    p_.window.clearProgress();
}

void ScanPass::end() {
    if (p_.state.StopRequested)
        endStopped();
    else
        endPaused(unread_.empty() ? Trouble::none : Trouble::folderUnread, unreadWords_);
}

void ScanPass::endPaused(Trouble trouble, const std::string& words) {
    const Message text = "ZEP Is PAUSED at " + named(timeText(p_.clock.now()));
    p_.window.setPanel1(text.text());
    p_.window.setCaption(text.text());
    p_.report.showInLabel2(text);
    finishEnding(trouble, words);
    // A single pass is over when it has ended, however it did.
    p_.timRun.setEnabled(!singlePass_);
    p_.mode.tmchkTimer_Timer();
}

void ScanPass::endStopped() {
    p_.window.setPanel1("User Stopped Encrypting Files");
    p_.window.setCaption("Done Encrpting Files");
    p_.report.showInLabel2("User Stopped Encrypting Files");
    finishEnding(Trouble::none);
}

void ScanPass::endMissingFolders() {
    p_.window.setPanel1(kFoldersMissing);
    p_.window.setCaption("Problem.... ");
    p_.report.showInLabel2(kFoldersMissing);
    finishEnding(Trouble::folderGone, folderTrouble_);
}

void ScanPass::finishEnding(Trouble trouble, const std::string& words) {
    p_.state.StopRequested = false;
    p_.state.ScanActive = false;
    p_.state.PassInProgress = false;
    p_.state.SinglePassMode = false;
    p_.state.FileList.clear();
    p_.state.FileList.shrink_to_fit();
    p_.settings.saveSettings();
    p_.log.saveWhenOn();
    p_.mode.tmchkTimer_Timer();
    p_.window.setWaitPointer(false);
    p_.window.clearProgress();
    p_.notices.passEnded(trouble, words, std::exchange(rejected_, 0));
}

}  // namespace vantrell
