// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/result.h"
#include "platform/files/place.h"

namespace vantrell {

/// Gives the regular file at a place a second name in its folder, or puts a copy with the same permissions there where
/// the file cannot have one. Its contents are on stable storage; flushing the folder is left to the caller. Never
/// replaces (`nameTaken`), but a second name that the file has already is as good.
[[nodiscard]] Result<> keepSecondName(const Place& file, const std::string& newName);

}  // namespace vantrell
