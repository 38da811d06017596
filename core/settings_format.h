// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "core/settings_rows.h"

namespace vantrell {

/// The line of ZEP.cfg, CR LF included: items separated by commas, texts in double quotes without any escaping,
/// Booleans as #TRUE# or #FALSE#, numbers in decimal. Texts are bytes.
[[nodiscard]] std::string formatSettings(const SettingsRecord& settings);

/// Reads items in order into `settings` until one cannot be read; later fields keep their values. Returns how many
/// were read, at most `kSettingsItems`. Blanks around items are skipped; what follows the last item is ignored.
int parseSettings(std::string_view bytes, SettingsRecord& settings);

}  // namespace vantrell
