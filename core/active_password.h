// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "task/task.h"

namespace vantrell {

/// Puts the active password into `ActivePassword`, which stays empty when there is none.
using ActivePasswordLookup = std::function<Task<void>()>;

inline constexpr char kNoActivePassword[] = "There is no active password.  Encryption has stopped.";

}  // namespace vantrell
