// SPDX-License-Identifier: MIT
#include "passwords/current_password.h"

namespace vantrell {

Task<void> CurrentPassword::viewCurrentPassword() {
    p_.state.ActivePassword.clear();
    co_await p_.lookUpActivePassword();
    if (!p_.state.ActivePassword.empty()) co_return p_.boxes.inform({kApplicationTitle, p_.state.ActivePassword});
    p_.mode.TurnOffTimRun();
    p_.window.setLabel2(std::string(kNoActivePassword) + ".");
    p_.boxes.inform({kApplicationTitle, kNoActivePassword});
}

}  // namespace vantrell
