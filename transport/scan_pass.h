// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "transport/encrypt_file.h"
#include "transport/lookahead.h"
#include "transport/pass_endings.h"
#include "transport/pass_folders.h"
#include "transport/question_desk.h"

namespace vantrell {

/// One scan pass: searches the source folder, has every file encrypted and moved, and rejects what failed.
class ScanPass {
public:
    ScanPass(PassParts parts, CryptoFactory makeComponent);

    /// The operator wants one full pass, or passes until he stops them.
    void takeStart(bool once);

    /// One pass from its first step to one of its endings. Not to be started while another one is under way.
    Task<void> timRun_Timer();
    /// From its search to its ending.
    [[nodiscard]] bool isInProgress() const { return p_.state.PassInProgress; }
    [[nodiscard]] bool isSearching() const { return isInProgress() && files_.empty(); }
    /// The pass under way ends before its next file; a question that it asks is withdrawn.
    void requestStop();
    /// Puts the state in order after the pass under way was aborted.
    void passWasAborted();
    /// The same after an exception: the program goes on as stopped.
    void passHasFailed();

private:
    /// Whether a file is followed by the next one, or why the carrying is over. The pass itself ends only when all
    /// moves are on the disk: until then no other one begins.
    enum class Next { goOn, over, missingFolders, noPassword, diskFails };

    /// False when this is the start's own pass, and the program is not to process at its start.
    bool beginsAtStartup();
    /// True when one of the four is empty, which has been said then.
    bool reportEmptyFolder();
    void reportNoPassword();
    [[nodiscard]] EncryptionParts encryptionParts(CryptoFactory makeComponent);
    /// Whether what stands there under the file's name is another file of this name, carried before.
    [[nodiscard]] Result<bool> isNamesakes(const Path& source, const Path& folder, const std::string& ending) const;
    Task<void> searchAndCarry();
    Task<void> noteNamesakes();
    Task<void> carryFiles();
    Task<Next> carryAll();
    Task<void> endCarrying(Next next);
    Task<Result<>> settleFlushNote();
    void lookAhead(Lookahead& ahead, std::size_t& next);
    using Group = std::vector<Lookahead::Item>;
    Task<Next> carryNext(Lookahead& ahead);
    void takePassword(Lookahead::Item& item, const std::string& password);
    /// One that is ready; nothing when the group is complete.
    std::optional<Lookahead::Item> nextOfGroup(Lookahead& ahead, const Group& group, const std::string& password);
    Task<Next> finishGroup(Group group);
    [[nodiscard]] bool areFoldersGone();
    Task<Next> carryOne(Lookahead::Item item);
    EncryptOrder orderFor(const Path& path) const;
    Task<Next> afterFailure(Path path, EncryptResult result);
    Task<std::optional<Fault>> reject(const Path& path, EncryptResult& result);
    Next afterMachineFault(const Path& path, const Fault& fault, FileReport& report);
    Next afterFileInUse(const Path& path, FileReport& report);
    Next afterCarrying(const Path& path, const EncryptResult& result);
    void countCarried();
    /// It stays in Source; nothing more is said of it while the next passes leave it as this one.
    void leave(const Path& path, const std::string& how, FileReport& report);
    static void reportNotEncrypted(const Path& path, FileReport& report);
    [[nodiscard]] bool flushHasFailed() const { return p_.flushNote.failures() != flushFaultsBefore_; }
    Next unlessStopped();
    void stopAndReport();

    void end();
    void endPaused(Trouble trouble, const std::string& words);
    void endStopped();
    void endMissingFolders();
    void endWithoutPassword();
    /// What belonged to the pass goes.
    void clear();

    PassParts p_;
    PassFolders folders_;
    PassEndings endings_;
    QuestionDesk questions_;
    FileEncryption encryption_;

    bool freshStart_ = false;        // Start was pressed, not for one pass, and no pass has begun since
    bool singlePassWanted_ = false;  // for the next pass
    bool stopRequested_ = false;

    SettingsRecord settings_;  // as taken at the start of the pass
    std::vector<Path> files_;  // what the search of this pass found
    bool singlePass_ = false;
    int machineFaults_ = 0;  // in a row
    std::string diskFault_;  // of `Next::diskFails`
    std::uint64_t rejected_ = 0;
    std::int32_t processed_ = 0;
    bool isWhole_ = false;            // every file that was found has been carried or rejected
    unsigned flushFaultsBefore_ = 0;  // this pass
    using Left = std::map<Path, std::string>;
    Left left_;                   // in Source by this pass, and how
    Left leftBefore_;             // by the pass before
    std::string namesNotStored_;  // in words; of the pass before
};

}  // namespace vantrell
