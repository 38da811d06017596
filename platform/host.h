// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/path.h"

namespace vantrell {

/// Where things lie on this machine, and how another program is started.
class Host {
public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    /// Environment variable ALLUSERSPROFILE when it is set, else the user's data folder (XDG base directories).
    [[nodiscard]] virtual Path profileFolder() const = 0;
    /// The folder in which the running program file lies.
    [[nodiscard]] virtual Path programFolder() const = 0;
    /// Starts a program without waiting for it; False when there is no such file or it cannot be started.
    virtual bool startProgram(const Path& file) = 0;
    /// The same for a program that is known by its name and lies in one of the folders where programs lie (PATH).
    virtual bool startFromSearchPath(const std::string& name, const std::vector<std::string>& arguments) = 0;
    /// The value of an environment variable; empty when it is not set.
    [[nodiscard]] virtual std::string environment(const std::string& name) const = 0;
};

/// Held by the one running program of a data folder; the system gives it back when the process ends, however it ends.
class InstanceLock {
public:
    InstanceLock() = default;
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;
    virtual ~InstanceLock() = default;

    /// `impossible`: nothing can be locked there, so nobody knows whether another one runs.
    enum class Outcome { locked, anothers, impossible };
    /// The folder exists. Waits for nobody.
    virtual Outcome tryLock(const Path& folder) = 0;
};

}  // namespace vantrell
