// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "base/path.h"
#include "base/result.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

// Small steps on open files. `what` names the file in the words of a fault.

/// Writes all of it; goes on after interruptions and short writes.
Result<> writeAll(const UniqueFd& file, std::string_view bytes, std::string_view what);
/// The same, from the given place in the file on.
Result<> writeAllAt(const UniqueFd& file, std::string_view bytes, std::size_t offset, std::string_view what);
/// Reads from the given place until `into` is full or the file ends; the value is how much came.
Result<std::size_t> readAt(const UniqueFd& file, std::span<char> into, std::size_t offset, std::string_view what);

/// Puts a file with these bytes and permission bits in the place of whatever bears its name: under a temporary name
/// it is written and brought to stable storage, then it gets its name, then the folder is brought to stable storage.
/// When only that last step fails, the new file bears the name and may not outlive a power failure.
Result<> writeAtomically(Kernel& kernel, const Path& path, std::string_view bytes, mode_t permissions);
/// The same for a name that nothing bears yet; never replaces (`nameTaken`).
Result<> writeNew(Kernel& kernel, const Path& path, std::string_view bytes, mode_t permissions);

}  // namespace vantrell
