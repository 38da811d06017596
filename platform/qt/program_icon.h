// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace vantrell {

/// The program's icon as pictures of 16 to 256 pixels, for the windows and the notification area. It is outlined in a
/// light and a dark tone, so that it can be seen on panels of any colour.
[[nodiscard]] QIcon programIcon();

}  // namespace vantrell
