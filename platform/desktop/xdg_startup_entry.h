// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include "platform/startup_entry.h"

namespace vantrell {

class DesktopEntry;
class Kernel;

/// NRD-ZEP.desktop in the user's autostart folder ($XDG_CONFIG_HOME/autostart, else .config/autostart in the home
/// folder). The environment is read anew at each call.
class XdgStartupEntry final : public StartupEntry {
public:
    /// The kernel outlives the entry.
    XdgStartupEntry(Kernel& kernel, Path programFolder) : kernel_(kernel), programFolder_(std::move(programFolder)) {}

    /// An entry that cannot be read or understood, or that the desktop would pass over, counts as `elsewhere`. Programs
    /// are compared by path and by where links lead.
    [[nodiscard]] State state() const override;
    /// Missing folders are made. What stands in the entry's place is replaced; a link there is not followed. False also
    /// when no desktop entry can name the program (a path that is not UTF-8 or holds control characters).
    bool add() override;
    bool remove() override;

private:
    [[nodiscard]] Path programFile() const { return joinPath(programFolder_, "ZEP"); }
    [[nodiscard]] bool startsThisProgram(const DesktopEntry& entry) const;

    Kernel& kernel_;
    Path programFolder_;
};

}  // namespace vantrell
