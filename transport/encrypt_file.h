// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "activitylog/activity_log.h"
#include "activitylog/status_report.h"
#include "core/main_window.h"
#include "core/program_state.h"
#include "platform/file_toolbox.h"
#include "transport/crypto_component.h"
#include "transport/question_desk.h"

namespace vantrell {

/// One file to be encrypted and moved, with the folders of the pass it belongs to.
struct EncryptOrder {
    Path sourcePath;
    std::string password;
    Path destinationFolder;
    Path doneFolder;
    Path rejectFolder;
    /// A file of this name was carried earlier in this pass: what stands in the way is that one, not an old copy, and
    /// is never replaced.
    bool nameWasCarried = false;
    /// The operator knows already that this file is in use: nothing is said about it again.
    bool inUseWasTold = false;
};

enum class EncryptOutcome {
    carried,    ///< encrypted; `fault` says why it could not be moved, if so
    failed,     ///< to be rejected
    inUse,      ///< to be left alone until the next pass
    withdrawn,  ///< its question was taken back: nothing is said or done
};

struct EncryptResult {
    EncryptOutcome outcome = EncryptOutcome::carried;
    std::optional<Fault> fault;
    std::unique_ptr<HeldFile> held;  ///< the source as it was read; null when it could not be opened
};

/// Turns one source file into `name`.enc in the destination folder, and moves the source file into the done folder.
class FileEncryption {
public:
    FileEncryption(const ProgramState& state, MainWindow& window, StatusReport& report, ActivityLog& log,
                   FileToolbox& toolbox, CryptoFactory makeComponent, QuestionDesk& questions);

    /// One file on its way: from `begin` to `finish`.
    struct Work;
    struct DeleteWork {
        void operator()(Work* work) const;
    };
    using WorkPointer = std::unique_ptr<Work, DeleteWork>;

    // In steps, so that a file can be prepared while the one before it is finished.

    /// Opens the source, which is held from here on.
    WorkPointer begin(EncryptOrder order);
    /// Bytes of the source; 0 when it could not be opened.
    [[nodiscard]] static std::uint64_t sizeOf(const Work& work);
    /// Encrypts into a file that has no name yet. Nothing of it can be seen.
    Task<void> prepare(Work& work);
    /// Everything else, with all that is said and asked.
    Task<EncryptResult> finish(WorkPointer work);
    [[nodiscard]] static EncryptOrder& orderOf(Work& work);

private:
    enum class Permission { replace, refused, inUse, withdrawn };
    struct Obstacle;

    Task<EncryptResult> encryptAndMove(Work& work);
    Task<Permission> mayReplace(Work& work, Obstacle obstacle);
    Task<Result<>> writeOutput(Work& work, Replace replace);
    Task<EncryptResult> moveToDone(Work& work);
    EncryptResult failedBy(Work& work, const Fault& fault);
    EncryptResult notPermitted(Work& work, Permission permission);
    void logFailure(const Work& work, const std::string& words);
    static EncryptResult resultOf(Work& work, EncryptOutcome outcome, std::optional<Fault> fault = {});

    const ProgramState& state_;
    MainWindow& window_;
    StatusReport& report_;
    ActivityLog& log_;
    FileToolbox& toolbox_;
    CryptoFactory makeComponent_;
    QuestionDesk& questions_;
};

}  // namespace vantrell
