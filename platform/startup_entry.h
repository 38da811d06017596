// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"

namespace vantrell {

/// The entry that starts the program when the user logs on (freedesktop Desktop Application Autostart Specification).
class StartupEntry {
public:
    enum class State {
        none,         ///< there is no entry
        works,        ///< the desktop will start this program
        switchedOff,  ///< there is one, but the desktop's own tool has switched it off
        elsewhere,    ///< there is one, but it starts another program file than this one
    };

    StartupEntry() = default;
    StartupEntry(const StartupEntry&) = delete;
    StartupEntry& operator=(const StartupEntry&) = delete;
    virtual ~StartupEntry() = default;

    [[nodiscard]] virtual State state() const = 0;
    /// Makes the entry for the program file's folder & "/ZEP", or mends it. False when it could not be written.
    virtual bool add() = 0;
    /// False when there is one that could not be deleted.
    virtual bool remove() = 0;
};

}  // namespace vantrell
