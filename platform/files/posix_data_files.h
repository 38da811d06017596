// SPDX-License-Identifier: MIT
#pragma once

#include "platform/data_files.h"
#include "platform/files/appended_file.h"

namespace vantrell {

/// The data folder's files over a kernel. Files that it makes are private (0600), whatever the umask.
class PosixDataFiles final : public DataFiles {
public:
    /// The kernel outlives it.
    explicit PosixDataFiles(Kernel& kernel) : kernel_(kernel), appended_(kernel) {}

    /// Follows links; never waits at a FIFO. A path that is no regular file is a fault.
    [[nodiscard]] Result<std::string> read(const Path& path, std::size_t limit) const override;
    /// Whether the existing file may be written is what the kernel says for this process. When the flush of the folder
    /// fails, the new contents stand under the name and the fault says that they may not outlive a power failure.
    Result<> writeAtomically(const Path& path, std::string_view bytes) override;
    Result<> remove(const Path& path) override;
    Result<> writeNew(const Path& path, std::string_view bytes) override;
    /// `newName` is a bare name or a path in the same folder.
    Result<> setAside(const Path& path, const Path& newName) override;
    Result<> keepCopy(const Path& path, const Path& newName) override;
    /// What an editor saved with bare line feeds keeps its lines.
    Result<> appendLines(const Path& path, std::string_view lines, bool cutTornEnd) override {
        return appended_.append(path, lines, cutTornEnd);
    }
    Result<> cutTornEnd(const Path& path) override { return appended_.cutTornEnd(path); }
    /// Also flushes the folder of a file that `appendLines` created.
    Result<> flush(const Path& path) override { return appended_.flush(path); }
    Result<> makePrivateFolders(const Path& path) override;
    Result<> makePrivate(const Path& path) override;

private:
    Kernel& kernel_;
    AppendedFile appended_;
};

}  // namespace vantrell
