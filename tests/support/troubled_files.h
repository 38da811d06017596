// SPDX-License-Identifier: MIT
#pragma once

#include <set>

#include "platform/files/posix_data_files.h"

namespace vantrell::test {

/// The real data files, some of which cannot be written, whoever asks.
class TroubledFiles final : public DataFiles {
public:
    explicit TroubledFiles(Kernel& kernel) : real_(kernel) {}

    [[nodiscard]] Result<std::string> read(const Path& path, std::size_t limit) const override {
        return real_.read(path, limit);
    }
    Result<> writeAtomically(const Path& path, std::string_view bytes) override {
        if (unwritable.contains(path)) return Fault{FaultKind::other, path + ": no right"};
        return real_.writeAtomically(path, bytes);
    }
    Result<> setAside(const Path& path, const Path& name) override { return real_.setAside(path, name); }
    Result<> appendLines(const Path& path, std::string_view lines, bool cutTornLine) override {
        return real_.appendLines(path, lines, cutTornLine);
    }
    Result<> flush(const Path& path) override { return real_.flush(path); }
    Result<> makePrivateFolders(const Path& path) override { return real_.makePrivateFolders(path); }

    std::set<Path> unwritable;  ///< as a file to which there is no right

private:
    PosixDataFiles real_;
};

}  // namespace vantrell::test
