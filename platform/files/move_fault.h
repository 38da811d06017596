// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "platform/files/place.h"

namespace vantrell {

/// The fault of a call that touches both sides of a move, the source and the target's folder. What is not permitted is
/// this one file's trouble where the folder takes other files (another owner's file in a folder like /tmp).
[[nodiscard]] Fault moveFault(const Place& to, int error, std::string_view what);

}  // namespace vantrell
