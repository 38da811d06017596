// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/path.h"
#include "base/result.h"
#include "task/task.h"

namespace vantrell {

using FileDate = std::chrono::system_clock::time_point;

/// Where the file system is mounted on which a folder lies.
struct MountPoint {
    Path path;
    std::string type;      ///< "ext4", "nfs4" … as the system names it
    std::uint64_t id = 0;  ///< mostly another one when it has been mounted anew; means nothing to a later start
    bool operator==(const MountPoint&) const = default;
};

/// `unknown`: it cannot be told, which is the machine's trouble.
enum class EntryKind { missing, regularFile, folder, other, unknown };

/// Whether an existing file under the target name may be replaced. Replacing is one rename over the old file, so old
/// or new is always there.
enum class Replace { never, allowed };

/// A regular file held open for reading, together with what it was when it was opened (which file it is, its size and
/// times).
class HeldFile {
public:
    HeldFile() = default;
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    virtual ~HeldFile() = default;

    /// Bytes, as of the opening.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// Reads the next bytes; the value is how many came, 0 at the end of the file. What the disk cannot read is one
    /// file's trouble; a server that does not answer is the machine's.
    virtual Result<std::size_t> read(std::span<std::byte> into) = 0;
    /// The next reading begins at the first byte again.
    virtual void rewind() = 0;
    /// As of the opening: its owner may not write to it.
    [[nodiscard]] virtual bool isReadOnly() const = 0;
    /// Fault `inUse` when somebody has the file open for writing, or when it or what stands under its path is not what
    /// was opened (a changed file, another file, a link); `notThere` when nothing stands there any more.
    virtual Result<> verify() = 0;
};

/// A regular file that stands already under a name that is needed, and may be what would be put there.
class StandingFile {
public:
    StandingFile() = default;
    StandingFile(const StandingFile&) = delete;
    StandingFile& operator=(const StandingFile&) = delete;
    virtual ~StandingFile() = default;

    /// Bytes, as of the opening.
    [[nodiscard]] virtual std::uint64_t size() const = 0;
    /// As HeldFile::read.
    virtual Result<std::size_t> read(std::span<std::byte> into) = 0;
    /// Brings the file and its name to stable storage. Fault `inUse` when what stands there is not what was opened, or
    /// has changed since, or is being written to.
    virtual Task<Result<>> confirm() = 0;
};

/// A new file that has no final name until it is whole and on stable storage. Destroying it before `publish` has ended
/// drops it; only where an old file has been replaced already, the new one stays.
class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    virtual ~OutputFile() = default;

    /// Appends the bytes, which must stay valid until the task has ended.
    virtual Task<Result<>> write(std::span<const std::byte> bytes) = 0;
    /// Brings everything written to stable storage.
    virtual Task<Result<>> flush() = 0;
    /// Gives the flushed file a name that is free (`nameTaken` otherwise). The next `flushNames` brings the name to
    /// stable storage, and with it the file is published; dropped before, it loses the name again.
    virtual Result<> nameIfFree(std::string name) = 0;
    /// Flushes what is not flushed yet, gives the file its name in the folder for which it was created, and flushes the
    /// folder. The last call but for `discard`.
    virtual Task<Result<>> publish(std::string name, Replace replace) = 0;
    /// Drops the file in steps that do not hold up the event loop.
    virtual Task<void> discard() = 0;
};

struct SearchOrder {
    Path folder;
    bool recurse = false;
    /// Folders that are not entered where they lie inside `folder` (compared as folders, not as texts).
    std::vector<Path> notEntered = {};
    /// Asked now and then; the search ends early when it answers True.
    std::function<bool()> isStopped = {};
    /// Told of each folder whose files are missing from the result, all or some, because it cannot be read. A folder
    /// that went away meanwhile is none.
    std::function<void(const Path&, const Fault&)> notRead = [](const Path&, const Fault&) {};
    /// The files that will be held later in this pass. Where the system does not tell who writes to a file, the first
    /// look at these is taken by the search, so that the pass waits for the second one only once. All when empty.
    std::function<bool(const Path&)> willBeHeld = {};
};

/// When a move within one file system is brought to stable storage. `later`: with the next `flushMoves`; until then a
/// crash of the machine may undo it, which leaves the file under its old name.
enum class Durable { now, later };

/// What a regular file at the target is that equals the source byte for byte and that nobody writes to.
enum class OnEqual {
    isAnother,   ///< a file like any other: only `Replace` counts
    isTheSame,   ///< the source itself, moved earlier: it counts as arrived now, is flushed, and the source name goes
    isReplaced,  ///< as `isTheSame`, but not believed to be on the disk: the source takes its place
};

struct MoveOrder {
    Path source;
    Path target;
    Replace replace = Replace::never;
    /// When given: the move is refused with `inUse` unless the file at `source` is still this one.
    HeldFile* expected = nullptr;
    Durable durable = Durable::now;
    /// Needs `expected`.
    OnEqual onEqual = OnEqual::isAnother;
};

/// The file operations of the program. Only regular files are files here: links, FIFOs, sockets and devices are never
/// followed, opened or moved, and never block.
///
/// All of it on the one thread. Files that it gave out and tasks that it began are gone before it is. A task that is
/// destroyed before its end leaves each file whole, under its old name or its new one.
class FileToolbox {
public:
    FileToolbox() = default;
    FileToolbox(const FileToolbox&) = delete;
    FileToolbox& operator=(const FileToolbox&) = delete;
    virtual ~FileToolbox() = default;

    /// A pass begins. Until `endPass`, everything below `source` is reached through the folder that stands there now
    /// and never through a link below it, and what is published and moved is remembered (`wasMadeInThisPass`).
    virtual void beginPass(const Path& source) = 0;
    virtual void endPass() = 0;
    /// In a pass the folders that files are put into are held open; from here on they are found by their paths anew.
    virtual void lookAgain() = 0;
    /// Whether what stands under the path was published or moved there since `beginPass`, under whatever name.
    [[nodiscard]] virtual Result<bool> wasMadeInThisPass(const Path& path) const = 0;
    /// Whether names that differ in letter case, or in how they are composed, may be one name in the folder, or the
    /// identities of files change there: then `wasMadeInThisPass` may miss one.
    [[nodiscard]] virtual bool hasUncertainNames(const Path& folder) const = 0;
    /// Is told at once of every flush that has failed, of a file or a folder. A later flush that succeeds proves
    /// nothing.
    virtual void onFlushFault(std::function<void()> told) = 0;

    // What cannot be looked at is not taken for missing, and not for another one: whoever protects something asks
    // further only where the answer is sure.
    /// What stands under the path; links are `other`.
    [[nodiscard]] virtual EntryKind kindOf(const Path& path) const = 0;
    /// Whether the path leads to a folder; here a link to a folder counts as one.
    [[nodiscard]] virtual bool isFolder(const Path& path) const = 0;
    /// Whether both paths lead to the same existing folder, whatever the paths' texts.
    [[nodiscard]] virtual Result<bool> isSameFolder(const Path& one, const Path& other) const = 0;
    /// Whether both paths lead to the same existing file or folder; links at their ends are not followed.
    [[nodiscard]] virtual Result<bool> isSameFile(const Path& one, const Path& other) const = 0;
    /// Tells the regular file under the path from another one that stands there at another time; empty when none stands
    /// there.
    [[nodiscard]] virtual Result<std::string> markOf(const Path& path) const = 0;
    /// The longest name that the folder takes, in bytes.
    [[nodiscard]] virtual std::size_t longestName(const Path& folder) const = 0;
    /// The mount under which the folder lies, or would lie when there is no such folder. It is opened first, so that a
    /// file system that is mounted when somebody needs it comes. Nothing when it cannot be told.
    [[nodiscard]] virtual std::optional<MountPoint> mountUnder(const Path& folder) const = 0;
    /// Creates one level; False when it could not be created.
    virtual bool makeFolder(const Path& path) = 0;
    /// Takes the read-only attribute off a regular file; errors are ignored.
    virtual void clearReadOnly(const Path& path) = 0;

    /// Every regular file below the folder, hidden ones too, ascending by the bytes of the path. Our own temporary
    /// names (".zep-" and 16 hexadecimal digits) are passed over. What cannot be read is told and passed over.
    virtual Task<std::vector<Path>> search(SearchOrder order) = 0;

    /// Names of the regular files at the top level of the folder, without the hidden ones, ascending by their bytes.
    /// None when the folder cannot be read.
    virtual Task<std::vector<Path>> listFiles(Path folder) = 0;

    /// Opens a regular file for reading. Fault `inUse` when somebody has it open for writing, or when nothing tells yet
    /// that nobody has.
    virtual Result<std::unique_ptr<HeldFile>> hold(const Path& path) = 0;
    /// The same, and waits where only time can tell. Ends early, with `inUse`, when `isStopped` answers True.
    virtual Task<Result<std::unique_ptr<HeldFile>>> holdInTurn(Path path, std::function<bool()> isStopped) = 0;
    /// Opens what stands under a name that is needed. Fault `inUse` when somebody is known to write to it.
    virtual Result<std::unique_ptr<StandingFile>> openStanding(const Path& path) = 0;
    /// Begins a new file that will get its name in the given folder.
    virtual Result<std::unique_ptr<OutputFile>> createOutput(const Path& folder) = 0;

    /// Within one file system; never replaces. Nothing changed when there is a fault.
    virtual Task<Result<>> rename(Path source, Path target) = 0;
    /// Also across file systems. The file is at the target on success. Nothing has changed when there is a fault, but
    /// for one case that its text tells: the file stands in the target folder and could not be put back. Fault
    /// `notPermitted` when this file may not be moved although the target folder takes files.
    virtual Task<Result<>> move(MoveOrder order) = 0;
    /// Brings the moves that were to be durable later to stable storage, those of one folder together; many of them are
    /// brought there before that. A fault concerns any of the moves since the last call: those that are not known to be
    /// on stable storage have been taken back, as far as that could be done, and the text says so. It is the machine's
    /// trouble, not that of one file.
    virtual Task<Result<>> flushMoves() = 0;
    /// Brings the names in these folders and below them to stable storage, whoever gave or took them.
    /// Publishes the new files that were given free names since the last call: one flush of their folder serves them
    /// all. After a fault none of them is published.
    virtual Task<Result<>> flushNames() = 0;
    virtual Task<Result<>> flushFolders(std::vector<Path> folders) = 0;
    /// The file's age counts from here: the later of its birth and its last change of status. `epoch` when it cannot
    /// be told.
    [[nodiscard]] virtual FileDate fileDate(const Path& path) const = 0;
    /// Whether `fileDate` tells in this folder when a file came there. There are file systems where the change of
    /// status is not kept, and shows the time of modification instead, which people carry along with old files. Tried
    /// out with a file of our own. False also when it cannot be told.
    [[nodiscard]] virtual bool tellsArrival(const Path& folder) = 0;
    /// Removes a regular file for good, provided that it is still the one whose `fileDate` was `date`; otherwise fault
    /// `inUse`, and nothing is removed. A large file's space is given back in steps that do not hold up the event loop.
    virtual Task<Result<>> removeFile(Path path, FileDate date) = 0;

    /// After a crash: removes our left-over temporary files from `outputFolders`, and moves files that were being
    /// removed from `sourceFolder` (and below it) back to their place. Ends early when `isStopped` answers True.
    virtual Task<void> cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder,
                                         std::function<bool()> isStopped) = 0;
};

}  // namespace vantrell
