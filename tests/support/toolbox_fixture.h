// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/posix_toolbox.h"
#include "platform/linux/linux_fd.h"
#include "rig/hand_cranked_loop.h"
#include "rig/settable_clock.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {

/// While it lives, the process has an ordinary user's rights (only where it is root's).
class OrdinaryUser {
public:
    OrdinaryUser() : changed_(::geteuid() == 0 && ::seteuid(kNobody) == 0) {}
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (changed_ && ::seteuid(0) != 0) std::abort();
    }

private:
    static constexpr uid_t kNobody = 65534;
    bool changed_;
};

inline std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

inline struct stat statusAt(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    return status;
}

using Names = std::vector<std::string>;

/// How it failed; nothing when it succeeded.
template <class T>
std::optional<FaultKind> faultOf(const Result<T>& result) {
    return result.ok() ? std::nullopt : std::optional(result.fault().kind);
}
inline constexpr std::optional<FaultKind> kSuccess;

/// What went wrong, for the words of a failed test.
template <class T>
std::string wordsOf(const Result<T>& result) {
    return result.ok() ? std::string() : result.fault().text;
}

/// A real toolbox on real folders.
class WithToolbox : public testing::Test {
public:
    void write(OutputFile& file, const std::string& bytes) {
        EXPECT_TRUE(loop.valueOf(file.write(std::as_bytes(std::span(bytes)))).ok());
    }

    TemporaryFolder folder;
    HandCrankedLoop loop;
    SettableClock clock{std::chrono::system_clock::now() + std::chrono::hours(1)};
    PosixToolbox toolbox{loop, loop.kernel(), clock};
};

/// A second folder, on another file system where this machine has one at hand.
class OtherFileSystem {
public:
    OtherFileSystem() {
        if (std::filesystem::exists("/dev/shm")) folder_ = std::make_unique<TemporaryFolder>("/dev/shm");
    }
    [[nodiscard]] bool isOtherThan(const TemporaryFolder& folder) const {
        return folder_ && statusAt(folder_->path()).st_dev != statusAt(folder.path()).st_dev;
    }
    const TemporaryFolder& operator*() const { return *folder_; }
    const TemporaryFolder* operator->() const { return folder_.get(); }

private:
    std::unique_ptr<TemporaryFolder> folder_;
};

}  // namespace vantrell::test
