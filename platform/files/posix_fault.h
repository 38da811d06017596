// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/result.h"

namespace vantrell {

// The one place where error numbers of the host become faults. `what` says what was tried, for people.

/// The number is not 0.
[[nodiscard]] Fault faultFromErrno(int number, std::string_view what);
/// 0 is success.
[[nodiscard]] Result<> resultFromErrno(int number, std::string_view what);

}  // namespace vantrell
