// SPDX-License-Identifier: MIT
#include "transport/pass_folders.h"

#include <algorithm>
#include <utility>

namespace vantrell {

bool PassFolders::check() {
    const Message source = named(settings_.SourceFolder);
    const Message bypassing = " does not exist bypassing ";
    const Message bypassingSource = bypassing + source + " events!";
    mayComeBack_ = false;
    const bool isUnusable =
        reportIfMissing(settings_.SourceFolder, "Source Folder " + source + bypassing + "events!") ||
        reportIfMissing(settings_.DestinationFolder,
                        "Destination Folder " + named(settings_.DestinationFolder) + bypassingSource) ||
        reportIfMissing(settings_.DoneFolder, "Done Folder " + named(settings_.DoneFolder) + bypassingSource) ||
        reportIfAway(settings_.RejectFolder, "Reject Folder " + named(settings_.RejectFolder) + bypassingSource) ||
        reportIfSource(settings_.DoneFolder, "Done Folder ") ||
        reportIfSource(settings_.RejectFolder, "Reject Folder ");
    // Whatever has happened to it meanwhile, it comes back as if it were new.
    if (isUnusable) cleaned_.clear();
    if (isUnusable) claim_.release();
    return !isUnusable;
}

bool PassFolders::claimSource() {
    if (claim_.claim(settings_.SourceFolder) != SourceClaim::Outcome::anothers) return true;
    report("Source Folder " + named(settings_.SourceFolder) +
           " is being processed by another ZEP on this computer. It is left alone until that one has stopped.");
    return false;
}

// The mount is asked for first: that may mount it.
bool PassFolders::reportIfMissing(const Path& folder, const Message& words) {
    if (reportIfAway(folder, words)) return true;
    if (toolbox_.isFolder(folder)) return false;
    report(words);
    return true;
}

bool PassFolders::reportIfAway(const Path& folder, const Message& words) {
    if (!isAway(folder)) return false;
    mayComeBack_ = true;
    // Who looks sees a folder there.
    if (toolbox_.isFolder(folder))
        report_.showInPanel1("Folder " + named(folder) +
                             " does not lie where it lay before: something else is mounted there, or nothing. "
                             "Choose it again to use it as it is.");
    report(words);
    return true;
}

bool PassFolders::isOneAway() {
    const std::vector<NamedFolder> folders = foldersOf(settings_);
    return std::any_of(folders.begin(), folders.end(), [this](const NamedFolder& one) { return isAway(one.folder); });
}

Task<void> PassFolders::cleanUp(std::function<bool()> isStopped) {
    std::vector<FolderMounts::Folder> now;
    for (const auto& [kind, folder] : foldersOf(settings_)) now.push_back({folder, toolbox_.mountUnder(folder)});
    mounts_.used(now);
    if (now == cleaned_) co_return;
    co_await toolbox_.cleanUpAfterCrash({settings_.DestinationFolder, settings_.DoneFolder, settings_.RejectFolder},
                                        settings_.SourceFolder, isStopped);
    if (!isStopped()) cleaned_ = std::move(now);
}

// Originals that are moved to where they came from would be found again by every pass.
bool PassFolders::reportIfSource(const Path& folder, const Message& what) {
    const Result<bool> isSame = toolbox_.isSameFolder(settings_.SourceFolder, folder);
    if (isSame.ok() && !isSame.value()) return false;
    mayComeBack_ = !isSame.ok();
    const Message reason = isSame.ok() ? Message(" is the Source Folder") : Message(" cannot be looked at");
    report(what + named(folder) + reason + " bypassing events!");
    return true;
}

void PassFolders::report(const Message& words) {
    trouble_ = words.text();
    report_.showInLabel2(words);
}

Task<std::vector<Path>> PassFolders::search(std::function<bool()> isStopped,
                                            std::function<bool(const Path&)> willBeHeld) {
    co_await cleanUp(isStopped);
    SearchOrder order;
    order.folder = settings_.SourceFolder;
    order.recurse = settings_.IncludeSubfolders;
    order.notEntered = {settings_.DoneFolder, settings_.RejectFolder};
    order.isStopped = std::move(isStopped);
    order.willBeHeld = std::move(willBeHeld);
    order.notRead = [this](const Path& folder, const Fault& fault) { reportUnread(folder, fault); };
    unreadBefore_ = std::exchange(unread_, {});
    unreadWords_.clear();
    co_return co_await toolbox_.search(std::move(order));
}

// What stands in it is not encrypted, and nobody would know.
void PassFolders::reportUnread(const Path& folder, const Fault& fault) {
    const Message words = "Folder " + named(folder) + " - FAILED: " + failureWords(fault.text);
    if (unread_.empty()) unreadWords_ = words.text();
    unread_.insert(folder);
    if (!unreadBefore_.contains(folder)) report_.showInPanel1(words);
}

}  // namespace vantrell
