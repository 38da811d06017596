// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/main_window.h"
#include "core/program_state.h"
#include "platform/file_toolbox.h"
#include "transport/crypto_component.h"
#include "transport/file_report.h"
#include "transport/flush_note.h"
#include "transport/question_desk.h"

namespace vantrell {

/// One file to be encrypted and moved, with the folders of the pass it belongs to.
struct EncryptOrder {
    Path sourcePath;
    std::string password;
    Path destinationFolder;
    Path doneFolder;
    Path rejectFolder;
    /// How the pass before left the file in Source, in words; empty when it did not (see FileReport).
    std::string leftBefore;
};

enum class EncryptOutcome {
    carried,    ///< encrypted; `fault` says why it could not be moved, if so
    failed,     ///< to be rejected
    inUse,      ///< to be left alone until the next pass
    withdrawn,  ///< its question was taken back, or Stop came while it waited: nothing is said or done
};

struct EncryptResult {
    EncryptOutcome outcome = EncryptOutcome::carried;
    std::optional<Fault> fault;
    std::unique_ptr<HeldFile> held;  ///< the source as it was read; null when it could not be opened
    std::unique_ptr<FileReport> report{};
};

/// What the encryption of files works with; everything outlives it.
struct EncryptionParts {
    const ProgramState& state;
    MainWindow& window;
    StatusReport& report;
    ActivityLog& log;
    FileToolbox& toolbox;
    QuestionDesk& questions;
    FlushNote& flushNote;
    CryptoFactory makeComponent;
    /// Whether what stands in the folder under the file's name and the ending is another file of this name that was
    /// carried before: no older version, which is never replaced.
    std::function<Result<bool>(const Path& source, const Path& folder, const std::string& ending)> isNamesakes;
    std::function<bool()> isStopped;
};

/// Turns one source file into `name`.enc in the destination folder, and moves the source file into the done folder.
class FileEncryption {
public:
    explicit FileEncryption(EncryptionParts parts) : p_(std::move(parts)) {}

    /// One file on its way: from `begin` to `finish`.
    struct Work;
    struct DeleteWork {
        void operator()(Work* work) const;
    };
    using WorkPointer = std::unique_ptr<Work, DeleteWork>;

    // In steps, so that a file can be prepared while the one before it is finished. What turns out wrong with it ahead
    // of its turn does not count: then it begins anew when its turn has come.

    /// Opens the source, which is held from here on.
    WorkPointer begin(EncryptOrder order);
    /// Bytes of the source; 0 when it could not be opened.
    [[nodiscard]] static std::uint64_t sizeOf(const Work& work);
    /// Encrypts into a file that has no name yet. Nothing of it can be seen.
    Task<void> prepare(Work& work);
    /// The turn of the file has come. When it is prepared, and nothing stands in its way and nothing needs to be asked,
    /// its output is given its name. False: `finish` does it all.
    [[nodiscard]] bool nameAhead(Work& work);
    /// Before any of them is finished: brings the names that were given ahead to stable storage, all at once.
    Task<void> settle(const std::vector<Work*>& named);
    /// Everything else, with all that is said and asked.
    Task<EncryptResult> finish(WorkPointer work);
    [[nodiscard]] static EncryptOrder& orderOf(Work& work);

private:
    enum class Permission { replace, refused, inUse, withdrawn };
    struct Obstacle;

    void makeComponentFor(Work& work);
    [[nodiscard]] static bool isReady(const Work& work);
    void clearReadOnly(const Work& work);
    Task<void> beginAnew(Work& work);
    Task<void> compare(Work& work);
    Task<EncryptResult> encryptAndMove(Work& work);
    Task<std::optional<EncryptResult>> encrypt(Work& work);
    Task<Permission> mayWriteOutput(Work& work, Replace& replace);
    Task<Permission> mayReplace(Work& work, Obstacle obstacle, bool isNamesakes);
    Task<Result<>> writeOutput(Work& work, Replace replace);
    Task<EncryptResult> moveToDone(Work& work);
    EncryptResult afterMove(Work& work, const Result<>& moved);
    EncryptResult failedBy(Work& work, const Fault& fault);
    EncryptResult notPermitted(Work& work, Permission permission);
    static void logFailure(Work& work, const std::string& words);
    static EncryptResult resultOf(Work& work, EncryptOutcome outcome, std::optional<Fault> fault = {});

    EncryptionParts p_;
};

}  // namespace vantrell
