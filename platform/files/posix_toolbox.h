// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/event_loop.h"
#include "platform/file_toolbox.h"
#include "platform/files/arrival_probe.h"
#include "platform/files/disposer.h"
#include "platform/files/file_date.h"
#include "platform/files/file_mover.h"
#include "platform/files/mount_lookup.h"
#include "platform/files/output_file.h"
#include "platform/files/use_probe.h"

namespace vantrell {

/// The file operations over a kernel. Outlives its tasks and the files it gave out; what is left of large dropped files
/// is dropped at once when it is destroyed, so it is destroyed last.
class PosixToolbox final : public FileToolbox {
public:
    struct Options {
        /// False: new files bear a temporary name from the beginning, as on file systems without nameless ones.
        bool namelessFiles = true;
    };
    PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock);
    PosixToolbox(EventLoop& loop, Kernel& kernel, const Clock& clock, Options options);

    void beginPass(const Path& source) override;
    void endPass() override;
    void lookAgain() override { parts_.targets.lookAgain(); }
    [[nodiscard]] Result<bool> wasMadeInThisPass(const Path& path) const override;
    [[nodiscard]] bool hasUncertainNames(const Path& folder) const override;
    void onFlushFault(std::function<void()> told) override { parts_.flushHasFailed = std::move(told); }
    [[nodiscard]] EntryKind kindOf(const Path& path) const override;
    [[nodiscard]] bool isFolder(const Path& path) const override;
    [[nodiscard]] Result<bool> isSameFolder(const Path& one, const Path& other) const override;
    [[nodiscard]] Result<bool> isSameFile(const Path& one, const Path& other) const override;
    [[nodiscard]] Result<std::string> markOf(const Path& path) const override;
    [[nodiscard]] std::size_t longestName(const Path& folder) const override;
    [[nodiscard]] std::optional<MountPoint> mountUnder(const Path& folder) const override {
        return mounts_.under(folder);
    }
    bool makeFolder(const Path& path) override;
    void clearReadOnly(const Path& path) override;
    Task<std::vector<Path>> search(SearchOrder order) override;
    Task<std::vector<Path>> listFiles(Path folder) override;
    Result<std::unique_ptr<HeldFile>> hold(const Path& path) override;
    Task<Result<std::unique_ptr<HeldFile>>> holdInTurn(Path path, std::function<bool()> isStopped) override;
    Result<std::unique_ptr<StandingFile>> openStanding(const Path& path) override;
    Result<std::unique_ptr<OutputFile>> createOutput(const Path& folder) override;
    Task<Result<>> rename(Path source, Path target) override;
    Task<Result<>> move(MoveOrder order) override;
    Task<Result<>> flushMoves() override { return mover_.flushMoves(); }
    Task<Result<>> flushNames() override { return vantrell::flushNames(parts_); }
    Task<Result<>> flushFolders(std::vector<Path> folders) override;
    [[nodiscard]] FileDate fileDate(const Path& path) const override { return fileDateAt(kernel_, path); }
    [[nodiscard]] bool tellsArrival(const Path& folder) override {
        return folderTellsArrival(kernel_, parts_.systems, folder);
    }
    Task<Result<>> removeFile(Path path, FileDate date) override;
    Task<void> cleanUpAfterCrash(std::vector<Path> outputFolders, Path sourceFolder,
                                 std::function<bool()> isStopped) override;

private:
    Result<std::unique_ptr<HeldFile>> holdNow(const Path& path, Readiness& readiness);

    EventLoop& loop_;
    Kernel& kernel_;
    const Clock& clock_;
    Disposer disposer_;
    mutable OutputParts parts_;  // what is known of file systems is found out by asking
    UseProbe probe_;
    mutable MountLookup mounts_;
    FileMover mover_;
};

}  // namespace vantrell
