// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/file_stamp.h"
#include "platform/files/source_tree.h"
#include "platform/files/unique_fd.h"
#include "platform/files/use_probe.h"

namespace vantrell {

class PosixHeldFile final : public HeldFile {
public:
    /// Opens a regular file; does not ask whether it is in use. Tree and probe outlive it.
    static Result<std::unique_ptr<PosixHeldFile>> open(Kernel& kernel, const SourceTree& tree, UseProbe& probe,
                                                       const Path& path);

    PosixHeldFile(const SourceTree& tree, UseProbe& probe, Path path, UniqueFd file, const struct stat& status)
        : tree_(tree),
          probe_(probe),
          path_(std::move(path)),
          file_(std::move(file)),
          status_(status),
          stamp_(stampOf(status)),
          isLocal_(probe.isLocal(file_, status.st_dev)) {}

    [[nodiscard]] std::uint64_t size() const override { return stamp_.size; }
    Result<std::size_t> read(std::span<std::byte> into) override;
    void rewind() override { next_ = 0; }
    [[nodiscard]] bool isReadOnly() const override { return (status_.st_mode & S_IWUSR) == 0; }
    Result<> verify() override;

    /// What is known of who writes to it, right after it was opened.
    [[nodiscard]] Readiness readiness() {
        wasAsked_ = isLocal_;
        return probe_.look(file_, stamp_);
    }
    [[nodiscard]] const UniqueFd& file() const { return file_; }
    [[nodiscard]] const FileStamp& stamp() const { return stamp_; }
    /// As of the opening.
    [[nodiscard]] const struct stat& status() const { return status_; }

private:
    [[nodiscard]] bool isKnownToBeWritten();

    const SourceTree& tree_;
    UseProbe& probe_;
    Path path_;
    UniqueFd file_;
    struct stat status_;
    FileStamp stamp_;
    bool isLocal_;
    bool wasAsked_ = false;  ///< about its writers, since when the signal of a lease is chosen
    off_t next_ = 0;         ///< where the next reading begins
};

Fault inUseFault();
Fault notRegularFault();

}  // namespace vantrell
