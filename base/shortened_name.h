// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrell {

/// The name in at most `longest` bytes. One that is longer loses its middle, in which "~" stands; beginning and end
/// stay, and with the end the extension. It is cut at the borders of characters where it is UTF-8. `number`, when it is
/// not 0, stands behind the "~".
[[nodiscard]] std::string shortenedName(std::string_view name, std::size_t longest, unsigned number);

}  // namespace vantrell
