// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <vector>

#include "platform/host.h"
#include "platform/linux/linux_fd.h"

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

/// A lock on the folder's own descriptor: no lock file is left behind, and a copied data folder is a free one.
class PosixInstanceLock final : public InstanceLock {
public:
    bool tryLock(const Path& folder) override;

private:
    LinuxFd folder_;
};

}  // namespace vantrell
