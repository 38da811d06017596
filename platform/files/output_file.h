// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "platform/file_toolbox.h"
#include "platform/files/file_stamp.h"
#include "platform/files/output_parts.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A new file without a name (or, where there are no such files, under a temporary name and locked).
class PosixOutputFile final : public OutputFile {
public:
    static Result<std::unique_ptr<PosixOutputFile>> create(OutputParts& parts, const Path& folder);

    PosixOutputFile(OutputParts& parts, UniqueFd folder, UniqueFd file, std::string temporaryName)
        : parts_(parts), folder_(std::move(folder)), file_(std::move(file)), temporaryName_(std::move(temporaryName)) {}
    PosixOutputFile(const PosixOutputFile&) = delete;
    PosixOutputFile& operator=(const PosixOutputFile&) = delete;
    ~PosixOutputFile() override;

    Task<Result<>> write(std::span<const std::byte> bytes) override;
    Task<Result<>> flush() override;
    Result<> nameIfFree(std::string name) override;
    Task<Result<>> publish(std::string name, Replace replace) override;
    Task<void> discard() override;

    /// Open until the file is published.
    [[nodiscard]] const UniqueFd& file() const { return file_; }
    /// Permission bits instead of those that the umask leaves, where the file system has such.
    Result<> setPermissions(mode_t permissions);
    [[nodiscard]] FileIdentity identity() const;

private:
    friend Task<Result<>> flushNames(OutputParts& parts);

    std::size_t writePiece(std::span<const std::byte> piece);
    Task<void> keepPace();
    Task<void> awaitFlush();
    void submitFlush();
    void fail(int error, std::string_view what);
    void isPublished();
    int giveName(const std::string& name);
    int giveTemporaryName();
    Task<Result<>> replaceName(std::string name);
    Task<Result<>> flushCount();
    void dropName();

    OutputParts& parts_;
    UniqueFd folder_;
    UniqueFd file_;
    std::string temporaryName_;  ///< empty while the file has no name
    std::uint64_t unflushed_ = 0;
    bool isDirty_ = true;
    std::optional<Pending<int>> flushUnderWay_;
    Result<> failed_;  ///< the first failure of writing or flushing stays: a later success proves nothing
};

/// Publishes the files that were given free names since the last call.
Task<Result<>> flushNames(OutputParts& parts);

}  // namespace vantrell
