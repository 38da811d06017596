// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "activitylog/status_report.h"
#include "core/program_state.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// The folders of the passes: whether a pass can go on with them, and what lies in Source.
class PassFolders {
public:
    /// Both outlive it.
    PassFolders(FileToolbox& toolbox, StatusReport& report) : toolbox_(toolbox), report_(report) {}

    /// A pass begins: these are its folders to its end.
    void begin(const SettingsRecord& settings) { settings_ = settings; }

    /// False when the pass cannot go on, which has been said then; `trouble` has the words.
    bool check();
    [[nodiscard]] const std::string& trouble() const { return trouble_; }

    /// The files of this pass, in their order. Once for each pass; `isStopped` is asked in between, and `willBeHeld`
    /// says which of them the pass would carry.
    Task<std::vector<Path>> search(std::function<bool()> isStopped, std::function<bool(const Path&)> willBeHeld);
    /// The words about the first folder that the search could not read; empty when it read them all.
    [[nodiscard]] const std::string& unreadWords() const { return unreadWords_; }

private:
    /// True when there is no such folder.
    bool reportIfMissing(const Path& folder, const Message& words);
    /// True when it is the Source folder itself.
    bool reportIfSource(const Path& folder, const Message& what);
    void report(const Message& words);
    void reportUnread(const Path& folder, const Fault& fault);

    FileToolbox& toolbox_;
    StatusReport& report_;
    SettingsRecord settings_;
    std::string trouble_;
    std::set<Path> unread_;        // of this pass
    std::set<Path> unreadBefore_;  // of the pass before
    std::string unreadWords_;
};

}  // namespace vantrell
