// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/fault.h"

namespace vantrell {

/// The one place where an error number of the host becomes a fault. `what` says what was tried, for people.
FileFault faultFromErrno(int number, std::string_view what);

}  // namespace vantrell
