// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

#include "base/path.h"

namespace vantrell {

// The folders that a chooser offers beside its list, read from what the machine and the desktop keep as text. Nothing
// is looked at on a disk, so that a share whose server is gone holds nobody up.

/// Where file systems of disks are mounted that belong to people, such as sticks, in the order of `mountInfo`
/// (/proc/self/mountinfo, proc(5)). Shares are left out, and so is what the system itself consists of.
[[nodiscard]] std::vector<Path> disksIn(std::string_view mountInfo);

/// The local folders among the bookmarks: lines "file:///srv/in Label" (gtk-3.0/bookmarks), or elements
/// `<bookmark href="file:///srv/in">` (XBEL). A byte may be written as "%" and two hexadecimal digits.
[[nodiscard]] std::vector<Path> bookmarksIn(std::string_view text);

}  // namespace vantrell
