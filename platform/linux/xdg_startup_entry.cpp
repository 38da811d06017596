// SPDX-License-Identifier: MIT
#include "platform/linux/xdg_startup_entry.h"

namespace vantrell {

StartupEntry::State XdgStartupEntry::state() const { return State::none; }
bool XdgStartupEntry::add() { return false; }
bool XdgStartupEntry::remove() { return true; }

}  // namespace vantrell
