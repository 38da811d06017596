// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <vector>

#include "platform/file_toolbox.h"

namespace vantrell::test {

/// Hands everything on to another toolbox; a test's own one overrides what is to be different.
class ForwardingToolbox : public FileToolbox {
public:
    explicit ForwardingToolbox(FileToolbox& real) : real_(real) {}

    void beginPass(const Path& source) override { real_.beginPass(source); }
    void endPass() override { real_.endPass(); }
    void lookAgain() override { real_.lookAgain(); }
    [[nodiscard]] Result<bool> wasMadeInThisPass(const Path& path) const override {
        return real_.wasMadeInThisPass(path);
    }
    [[nodiscard]] bool hasUncertainNames(const Path& folder) const override { return real_.hasUncertainNames(folder); }
    void onFlushFault(std::function<void()> told) override { real_.onFlushFault(std::move(told)); }
    [[nodiscard]] EntryKind kindOf(const Path& path) const override { return real_.kindOf(path); }
    [[nodiscard]] bool isFolder(const Path& path) const override { return real_.isFolder(path); }
    [[nodiscard]] Result<bool> isSameFolder(const Path& a, const Path& b) const override {
        return real_.isSameFolder(a, b);
    }
    [[nodiscard]] Result<bool> isSameFile(const Path& a, const Path& b) const override {
        return real_.isSameFile(a, b);
    }
    [[nodiscard]] Result<std::string> markOf(const Path& path) const override { return real_.markOf(path); }
    [[nodiscard]] std::size_t longestName(const Path& folder) const override { return real_.longestName(folder); }
    [[nodiscard]] std::optional<MountPoint> mountUnder(const Path& folder) const override {
        return real_.mountUnder(folder);
    }
    bool makeFolder(const Path& path) override { return real_.makeFolder(path); }
    void clearReadOnly(const Path& path) override { real_.clearReadOnly(path); }
    Task<std::vector<Path>> search(SearchOrder order) override { return real_.search(std::move(order)); }
    Task<std::vector<Path>> listFiles(Path folder) override { return real_.listFiles(std::move(folder)); }
    Result<std::unique_ptr<HeldFile>> hold(const Path& path) override { return real_.hold(path); }
    Task<Result<std::unique_ptr<HeldFile>>> holdInTurn(Path path, std::function<bool()> isStopped) override {
        return real_.holdInTurn(std::move(path), std::move(isStopped));
    }
    Result<std::unique_ptr<StandingFile>> openStanding(const Path& path) override { return real_.openStanding(path); }
    Result<std::unique_ptr<OutputFile>> createOutput(const Path& folder) override { return real_.createOutput(folder); }
    Task<Result<>> rename(Path source, Path target) override { return real_.rename(source, target); }
    Task<Result<>> move(MoveOrder order) override { return real_.move(std::move(order)); }
    Task<Result<>> flushMoves() override { return real_.flushMoves(); }
    Task<Result<>> flushNames() override { return real_.flushNames(); }
    Task<Result<>> flushFolders(std::vector<Path> folders) override { return real_.flushFolders(std::move(folders)); }
    [[nodiscard]] FileDate fileDate(const Path& path) const override { return real_.fileDate(path); }
    [[nodiscard]] bool tellsArrival(const Path& folder) override { return real_.tellsArrival(folder); }
    Task<Result<>> removeFile(Path path, FileDate date) override { return real_.removeFile(std::move(path), date); }
    Task<void> cleanUpAfterCrash(std::vector<Path> outputs, Path source, std::function<bool()> isStopped) override {
        return real_.cleanUpAfterCrash(std::move(outputs), std::move(source), std::move(isStopped));
    }

private:
    FileToolbox& real_;
};

}  // namespace vantrell::test
