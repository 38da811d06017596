// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "activitylog/status_report.h"
#include "core/folder_mounts.h"
#include "core/program_state.h"
#include "core/settings_keeper.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// The folders of the passes: whether a pass can go on with them, and what lies in Source.
class PassFolders {
public:
    /// All of them outlive it.
    PassFolders(FileToolbox& toolbox, StatusReport& report, FolderMounts& mounts)
        : toolbox_(toolbox), report_(report), mounts_(mounts) {}

    /// A pass begins: these are its folders to its end.
    void begin(const SettingsRecord& settings) { settings_ = settings; }

    /// False when the pass cannot go on, which has been said then; `trouble` has the words.
    bool check();
    [[nodiscard]] const std::string& trouble() const { return trouble_; }
    /// After a check that failed: a folder is only missing as long as something else is mounted where it lies, or
    /// nothing. Nobody has to do anything in this program when it comes back.
    [[nodiscard]] bool mayComeBack() const { return mayComeBack_; }
    /// True when one of them lies under another mount than it used to. Cheap: for every file.
    [[nodiscard]] bool isOneAway();

    /// The files of this pass, in their order. What a crash has left in the folders is cleaned up before, when they are
    /// used for the first time, or for the first time since something was mounted there anew. Once for each pass;
    /// `isStopped` is asked in between, and `willBeHeld` says which of them the pass would carry.
    Task<std::vector<Path>> search(std::function<bool()> isStopped, std::function<bool(const Path&)> willBeHeld);
    /// The words about the first folder that the search could not read; empty when it read them all.
    [[nodiscard]] const std::string& unreadWords() const { return unreadWords_; }

private:
    /// True when there is no such folder, or something else is mounted where it lies.
    bool reportIfMissing(const Path& folder, const Message& words);
    /// True when it is the Source folder itself.
    bool reportIfSource(const Path& folder, const Message& what);
    bool reportIfAway(const Path& folder, const Message& words);
    [[nodiscard]] bool isAway(const Path& folder) { return mounts_.isAnother(folder, toolbox_.mountUnder(folder)); }
    Task<void> cleanUp(std::function<bool()> isStopped);
    void report(const Message& words);
    void reportUnread(const Path& folder, const Fault& fault);

    FileToolbox& toolbox_;
    StatusReport& report_;
    FolderMounts& mounts_;
    SettingsRecord settings_;
    std::string trouble_;
    bool mayComeBack_ = false;
    std::vector<FolderMounts::Folder> cleaned_;  // what the last clean-up has found, mounted as it was then
    std::set<Path> unread_;                      // of this pass
    std::set<Path> unreadBefore_;                // of the pass before
    std::string unreadWords_;
};

}  // namespace vantrell
