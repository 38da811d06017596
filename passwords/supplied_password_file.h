// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vantrell {

/// The bytes of the empty password file (data/EDPasswords.mdb) that a new data folder gets.
[[nodiscard]] std::string_view suppliedPasswordFile();

}  // namespace vantrell
