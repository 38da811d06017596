// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "platform/files/kernel.h"

namespace vantrell {

/// Our temporary names: ".zep-" and 16 lower-case hexadecimal digits, made of random bytes. Never made from a file's
/// own name, which may be as long as a name can be already. Only what can be made again, or stands in a folder of such
/// a name, bears one.
std::string makeTemporaryName(Kernel& kernel);
[[nodiscard]] bool isTemporaryName(std::string_view name);

}  // namespace vantrell
