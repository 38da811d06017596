// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "base/path.h"
#include "base/result.h"

namespace vantrell {

// Small steps on descriptors. `what` names the file or folder in the words of a fault.

/// Writes all of it; goes on after interruptions and short writes.
Result<> writeAll(int descriptor, std::string_view bytes, std::string_view what);
/// The same, from the given place in the file on.
Result<> writeAllAt(int descriptor, std::string_view bytes, std::size_t offset, std::string_view what);
/// Reads from the given place until `into` is full or the file ends; the value is how much came.
Result<std::size_t> readAt(int descriptor, std::span<char> into, std::size_t offset, std::string_view what);
/// Brings the entries of a folder to stable storage.
Result<> flushFolder(const Path& folder);

}  // namespace vantrell
