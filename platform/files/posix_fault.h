// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "base/result.h"

namespace vantrell {

// The one place where error numbers of the host become faults. `what` says what was tried, for people; the number is
// not 0. Whose fault an error is depends on the side on which it is met.

/// Of the program's own files.
[[nodiscard]] Fault faultFromErrno(int number, std::string_view what);
/// The same; 0 is success.
[[nodiscard]] Result<> resultFromErrno(int number, std::string_view what);
/// Where files are written to. Everything is the machine's but what this name or this size causes: otherwise a folder
/// without permission would send every file of Source into the rejected folder.
[[nodiscard]] Fault outputFault(int number, std::string_view what);
/// The same where a file is given its name: there EINVAL says that the file system knows no such name.
[[nodiscard]] Fault namingFault(int number, std::string_view what);
/// Where files are taken from. What cannot be read is that file's trouble; one that is busy may be free later, and what
/// would be so with any file is the machine's.
[[nodiscard]] Fault sourceFault(int number, std::string_view what);

}  // namespace vantrell
