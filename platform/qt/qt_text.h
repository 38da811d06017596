// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <string_view>

namespace vantrell {

/// What people are shown for bytes of the engine.
[[nodiscard]] QString shownText(std::string_view bytes);

/// The same text for a tool tip, where Qt would take a name such as "<b>" for formatting; a long one wraps.
[[nodiscard]] QString tipText(const QString& text);

/// The same text for a label that wraps: a long name goes on in the next line, by zero-width spaces. The first of them
/// comes behind what counts of a password.
[[nodiscard]] QString breakableText(const QString& text);

}  // namespace vantrell
