// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <string_view>

namespace vantrell {

/// The text that is shown to people for bytes of the engine, such as a path.
[[nodiscard]] QString shownText(std::string_view bytes);

/// The same text for a tool tip, where Qt would take a name such as "<b>" for formatting; a long one wraps.
[[nodiscard]] QString tipText(const QString& text);

}  // namespace vantrell
