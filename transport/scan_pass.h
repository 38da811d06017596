// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <unordered_set>

#include "activitylog/status_report.h"
#include "core/active_password.h"
#include "core/mode_display.h"
#include "core/notices.h"
#include "core/settings_file.h"
#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/timers.h"
#include "transport/encrypt_file.h"
#include "transport/lookahead.h"
#include "transport/question_desk.h"

namespace vantrell {

/// What a pass works with; everything outlives it.
struct PassParts {
    ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    ActivityLog& log;
    SettingsFile& settings;
    FileToolbox& toolbox;
    MessageBoxes& boxes;
    EventLoop& loop;
    const Clock& clock;
    Timer& timRun;
    ModeDisplay& mode;
    Notices& notices;
};

/// One scan pass: searches the source folder, has every file encrypted and moved, and rejects what failed.
class ScanPass {
public:
    ScanPass(PassParts parts, CryptoFactory makeComponent, ActivePasswordLookup lookUpActivePassword);

    /// One pass from its first step to one of its endings. Not to be started while another one is under way.
    Task<void> timRun_Timer();
    /// From its search to its ending.
    [[nodiscard]] bool isInProgress() const { return p_.state.PassInProgress; }
    /// The pass under way ends before its next file; a question that it asks is withdrawn.
    void requestStop();
    /// Puts the state in order after the pass under way was aborted.
    void passWasAborted();

private:
    enum class Next { goOn, end };

    bool startsUpWithoutPass();
    bool emptyFolderIsReported();
    Task<bool> hasActivePassword();
    void reportNoPassword();
    Task<void> searchAndCarry();
    bool foldersAreThere();
    void reportFolderTrouble(const Message& text);
    bool missingFolderIsReported(const Path& folder, const Message& text);
    bool sourceIsReported(const Path& folder, const Message& what);
    Task<void> searchFiles();
    void reportUnread(const Path& folder, const Fault& fault);
    Task<void> carryFiles();
    void lookAhead(Lookahead& ahead, std::size_t& next);
    Task<Next> carryNext(Lookahead& ahead);
    Task<Next> carryOne(FileEncryption::WorkPointer work);
    EncryptOrder orderFor(const Path& path) const;
    Task<Next> afterFailure(Path path, EncryptResult result);
    Next afterMachineFault(const Path& path, const Fault& fault);
    Next afterFileInUse(const Path& path);
    void countCarried(const std::string& name);
    Task<Result<>> reject(Path path, HeldFile* held);
    void reportNotEncrypted(const Path& path);
    bool stopIsTaken();
    Next unlessStopped();
    void stopAndReport();

    void end();
    void endPaused(Trouble trouble = Trouble::none, const std::string& words = {});
    void endStopped();
    void endMissingFolders();
    void finishEnding(Trouble trouble, const std::string& words = {});

    PassParts p_;
    QuestionDesk questions_;
    FileEncryption encryption_;
    ActivePasswordLookup lookUpActivePassword_;

    SettingsRecord settings_;  // as taken at the start of the pass
    bool singlePass_ = false;
    int machineFaults_ = 0;  // in a row
    std::uint64_t rejected_ = 0;
    std::int32_t processed_ = 0;
    std::unordered_set<std::string> carriedNames_;  // of this pass
    std::string folderTrouble_;                     // the words about the folder that is missing
    std::set<Path> inUse_;                          // of this pass
    std::set<Path> inUseBefore_;                    // of the pass before
    std::set<Path> unread_;                         // folders, of this pass
    std::set<Path> unreadBefore_;                   // of the pass before
    std::string unreadWords_;                       // about the first of them
};

}  // namespace vantrell
