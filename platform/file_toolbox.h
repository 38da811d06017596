// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "base/path.h"
#include "base/result.h"
#include "task/task.h"

namespace vantrell {

using FileDate = std::chrono::system_clock::time_point;

enum class EntryKind { missing, regularFile, folder, other };

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
    /// Reads the next bytes; the value is how many came, 0 at the end of the file. A fault is never the machine's: what
    /// cannot be read is one file's trouble, even where it is the disk's.
    virtual Result<std::size_t> read(std::span<std::byte> into) = 0;
    /// Fault `inUse` when somebody has the file open for writing, or when it or what stands under its path is not what
    /// was opened (a changed file, another file, a link); `notThere` when nothing stands there any more.
    virtual Result<> verify() = 0;
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
    std::vector<Path> notEntered;
    /// Asked now and then; the search ends early when it answers True.
    std::function<bool()> isStopped;
    /// Told of each folder whose files are missing from the result, all or some, because it cannot be read. A folder
    /// that went away meanwhile is none.
    std::function<void(const Path&, const Fault&)> notRead = [](const Path&, const Fault&) {};
};

/// When a move within one file system is brought to stable storage. `later`: with the next `flushMoves`; until then a
/// crash of the machine may undo it, which leaves the file under its old name.
enum class Durable { now, later };

struct MoveOrder {
    Path source;
    Path target;
    Replace replace = Replace::never;
    /// When given: the move is refused with `inUse` unless the file at `source` is still this one.
    HeldFile* expected = nullptr;
    Durable durable = Durable::now;
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

    /// What stands under the path; links are `other`. `missing` also when it cannot be told.
    [[nodiscard]] virtual EntryKind kindOf(const Path& path) const = 0;
    /// Whether the path leads to a folder; here a link to a folder counts as one.
    [[nodiscard]] virtual bool isFolder(const Path& path) const = 0;
    /// Whether both paths lead to the same existing folder, whatever the paths' texts.
    [[nodiscard]] virtual bool isSameFolder(const Path& one, const Path& other) const = 0;
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

    /// Opens a regular file for reading. Fault `inUse` when somebody has it open for writing.
    virtual Result<std::unique_ptr<HeldFile>> hold(const Path& path) = 0;
    /// Begins a new file that will get its name in the given folder.
    virtual Result<std::unique_ptr<OutputFile>> createOutput(const Path& folder) = 0;

    /// Within one file system; never replaces. Nothing changed when there is a fault.
    virtual Task<Result<>> rename(Path source, Path target) = 0;
    /// Also across file systems. The file is at the target on success. Nothing has changed when there is a fault, but
    /// for one case that its text tells: the file stands in the target folder and could not be put back.
    virtual Task<Result<>> move(MoveOrder order) = 0;
    /// Brings the moves that were to be durable later to stable storage, those of one folder together; many of them are
    /// brought there before that. A fault concerns any of the moves since the last call: the files are at their
    /// targets, and a crash of the machine may undo that. It is the machine's trouble, not that of one file.
    virtual Task<Result<>> flushMoves() = 0;
    /// The file's age counts from here: the later of its birth and its last change of status. `epoch` when it cannot
    /// be told.
    [[nodiscard]] virtual FileDate fileDate(const Path& path) const = 0;
    /// Removes a regular file for good, provided that it is still the one whose `fileDate` was `date`; otherwise fault
    /// `inUse`, and nothing is removed. A large file's space is given back in steps that do not hold up the event loop.
    virtual Task<Result<>> removeFile(Path path, FileDate date) = 0;

    /// After a crash: removes our left-over temporary files from `outputFolders`, and moves files that were being
    /// removed from `sourceFolder` (and below it) back to their place.
    virtual Task<void> cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder) = 0;
};

}  // namespace vantrell
