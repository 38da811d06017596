// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <new>
#include <set>

#include "platform/files/posix_data_files.h"
#include "platform/linux/linux_kernel.h"

namespace vantrell::test {

/// The real data files, with troubles that cannot be provoked.
class TroubledFiles final : public DataFiles {
public:
    [[nodiscard]] Result<std::string> read(const Path& path, std::size_t limit) const override {
        look(path);
        return real_.read(path, limit);
    }
    Result<> writeAtomically(const Path& path, std::string_view bytes) override {
        look(path);
        Result<> written = real_.writeAtomically(path, bytes);
        if (vanishing.contains(path)) std::filesystem::remove(path);
        return written;
    }
    Result<> setAside(const Path& path, const Path& name) override { return real_.setAside(path, name); }
    Result<> appendLines(const Path& path, std::string_view lines, bool cutTornLine) override {
        return real_.appendLines(path, lines, cutTornLine);
    }
    Result<> flush(const Path& path) override { return real_.flush(path); }
    Result<> makePrivateFolders(const Path& path) override { return real_.makePrivateFolders(path); }

    std::set<Path> vanishing;    ///< gone as soon as it is written
    std::set<Path> outOfMemory;  ///< too much for the memory that is left

private:
    void look(const Path& path) const {
        if (outOfMemory.contains(path)) throw std::bad_alloc();
    }
    LinuxKernel kernel_;
    PosixDataFiles real_{kernel_};
};

}  // namespace vantrell::test
