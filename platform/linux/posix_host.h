// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <vector>

#include "platform/files/unique_fd.h"
#include "platform/host.h"

namespace vantrell {

class PosixHost final : public Host {
public:
    PosixHost() = default;
    ~PosixHost() override;

    /// $ALLUSERSPROFILE, else $XDG_DATA_HOME when it is absolute, else .local/share in the home folder.
    [[nodiscard]] Path profileFolder() const override;
    [[nodiscard]] Path programFolder() const override;
    /// The program gets a session of its own, no descriptor of ours (its standard streams lead to /dev/null), and the
    /// signal mask and dispositions that programs expect. One that has ended is collected by the next start, or with
    /// the host; when we end first, the system's first process collects it.
    bool startProgram(const Path& file) override;
    bool startFromSearchPath(const std::string& name, const std::vector<std::string>& arguments) override;
    [[nodiscard]] std::string environment(const std::string& name) const override;

private:
    bool start(const Path& file, const std::vector<std::string>& arguments, bool searched);
    void collectEnded();

    std::vector<pid_t> started_;
};

/// A lock on the file instance.lock (0600) in the folder, which is made when it is missing. It is never replaced or
/// removed, since two programs could then hold a lock each on two files of that name. A folder itself cannot be locked
/// on NFS, where only what is open for writing can. A copied data folder is a free one.
class PosixInstanceLock final : public InstanceLock {
public:
    /// The kernel outlives it.
    explicit PosixInstanceLock(Kernel& kernel) : kernel_(kernel) {}

    Outcome tryLock(const Path& folder) override;

private:
    Kernel& kernel_;
    UniqueFd file_;
};

}  // namespace vantrell
