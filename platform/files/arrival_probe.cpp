// SPDX-License-Identifier: MIT
#include "platform/files/arrival_probe.h"

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "platform/files/nameless_support.h"
#include "platform/files/place.h"
#include "platform/files/temporary_name.h"

namespace vantrell {

namespace {

constexpr mode_t kPrivateMode = 0600;
constexpr std::chrono::seconds kBack = std::chrono::hours(24 * 30);
// Times may be rounded, and a clock may be set back a little just now.
constexpr std::chrono::seconds kRoughly = std::chrono::minutes(1);

/// A file in a folder, without a name where that can be had.
class Probe {
public:
    explicit Probe(const UniqueFd& folder) : folder_(folder), file_(openNameless(folder)) {
        if (file_) return;
        name_ = makeTemporaryName(folder.kernel());
        file_ = folder.open(name_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kPrivateMode);
        if (file_)
            file_.lock();
        else
            name_.clear();
    }
    Probe(const Probe&) = delete;
    Probe& operator=(const Probe&) = delete;
    // One that stays has a name that a later clean-up knows.
    ~Probe() {
        if (!name_.empty()) static_cast<void>(folder_.unlink(name_.c_str()));
    }

    [[nodiscard]] const UniqueFd& file() const { return file_; }

private:
    const UniqueFd& folder_;
    UniqueFd file_;
    std::string name_;
};

// Asked of the server, where there is one.
std::optional<statx_timestamp> changeOf(const UniqueFd& file) {
    struct statx status {};
    constexpr int kFlags = AT_EMPTY_PATH | AT_STATX_FORCE_SYNC;
    const int error = file.kernel().statx(file.get(), "", kFlags, STATX_CTIME, status);
    if (error != 0 || (status.stx_mask & STATX_CTIME) == 0) return std::nullopt;
    return status.stx_ctime;
}

}  // namespace

bool folderTellsArrival(Kernel& kernel, FileSystems& systems, const Path& folderPath) {
    const UniqueFd folder = openFolder(kernel, folderPath);
    if (!folder) return false;
    const Probe probe(folder);
    const int error = probe.file().error();
    // A disk that is full needs the deletion most. On these file systems the answer is known.
    if (error == ENOSPC || error == EDQUOT) return systems.of(folder).hasFixedIdentities;
    if (!probe.file()) return false;
    const auto made = changeOf(probe.file());
    if (!made) return false;
    const timespec past{made->tv_sec - kBack.count(), 0};
    if (kernel.futimens(probe.file().get(), std::array{past, past}) != 0) return false;
    const auto changed = changeOf(probe.file());
    return changed && changed->tv_sec >= made->tv_sec - kRoughly.count();
}

}  // namespace vantrell
