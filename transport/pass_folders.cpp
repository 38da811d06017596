// SPDX-License-Identifier: MIT
#include "transport/pass_folders.h"

#include <utility>

namespace vantrell {

bool PassFolders::check() {
    const Message source = named(settings_.SourceFolder);
    const Message bypassing = " does not exist bypassing ";
    const Message bypassingSource = bypassing + source + " events!";
    const bool isUnusable =
        reportIfMissing(settings_.SourceFolder, "Source Folder " + source + bypassing + "events!") ||
        reportIfMissing(settings_.DestinationFolder,
                        "Destination Folder " + named(settings_.DestinationFolder) + bypassingSource) ||
        reportIfMissing(settings_.DoneFolder, "Done Folder " + named(settings_.DoneFolder) + bypassingSource) ||
        reportIfSource(settings_.DoneFolder, "Done Folder ") ||
        reportIfSource(settings_.RejectFolder, "Reject Folder ");
    return !isUnusable;
}

bool PassFolders::reportIfMissing(const Path& folder, const Message& words) {
    if (toolbox_.isFolder(folder)) return false;
    report(words);
    return true;
}

// Originals that are moved to where they came from would be found again by every pass.
bool PassFolders::reportIfSource(const Path& folder, const Message& what) {
    if (!toolbox_.isSameFolder(settings_.SourceFolder, folder)) return false;
    report(what + named(folder) + " is the Source Folder bypassing events!");
    return true;
}

void PassFolders::report(const Message& words) {
    trouble_ = words.text();
    report_.showInLabel2(words);
}

Task<std::vector<Path>> PassFolders::search(std::function<bool()> isStopped,
                                            std::function<bool(const Path&)> willBeHeld) {
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
