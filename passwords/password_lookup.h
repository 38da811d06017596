// SPDX-License-Identifier: MIT
#pragma once

#include "core/program_state.h"
#include "passwords/password_store.h"

namespace vantrell {

/// How the other rooms get the active password: with the loaded editor, which is closed by it, else with one that is
/// never shown. The caller sets `ActivePassword` to empty before; empty afterwards means that there is no active
/// password. `UiLoading` is raised during the lookup and lowered at its end, also when the task is destroyed; no box is
/// waited for. Both arguments outlive the task.
Task<void> lookUpActivePassword(PasswordStore& store, ProgramState& state);

}  // namespace vantrell
