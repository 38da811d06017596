// SPDX-License-Identifier: MIT
#pragma once

#include "platform/startup_entry.h"

namespace vantrell {

/// NRD-ZEP.desktop in the user's autostart folder ($XDG_CONFIG_HOME/autostart).
class XdgStartupEntry final : public StartupEntry {
public:
    explicit XdgStartupEntry(Path programFolder) : programFolder_(std::move(programFolder)) {}

    [[nodiscard]] State state() const override;
    bool add() override;
    bool remove() override;

private:
    Path programFolder_;
};

}  // namespace vantrell
