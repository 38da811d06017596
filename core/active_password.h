// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "task/task.h"

namespace vantrell {

/// Looks up the active password and puts it into `ActivePassword`, which stays empty when no password is active.
using ActivePasswordLookup = std::function<Task<void>()>;

inline constexpr char kNoActivePassword[] = "There is no active password.  Encryption has stopped.";

}  // namespace vantrell
