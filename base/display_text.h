// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantrell {

/// Bytes (a path, or a text that holds one) as people are shown them: valid UTF-8 on one line.
///
/// Control characters (C0, DEL, C1), the line and paragraph separators and every byte that is not UTF-8 become `\xNN`,
/// byte by byte; everything else passes unchanged. For display and logs only: there is no way back to the bytes.
[[nodiscard]] std::string displayText(std::string_view bytes);

}  // namespace vantrell
