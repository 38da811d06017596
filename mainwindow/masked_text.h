// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantrell {

/// What is left of a message of the activity log when only the program's own words may be seen: names of files and
/// folders, times and whatever else stands between them become "<…>", and a message that is none of ours disappears
/// altogether. The result is made of constants of this file alone, so nothing can shine through.
[[nodiscard]] std::string maskedMessage(std::string_view message);

}  // namespace vantrell
