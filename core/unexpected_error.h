// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// Of the exception that is being handled: a number, two blanks and words. Only to be called in a handler.
[[nodiscard]] std::string unexpectedError();

}  // namespace vantrell
