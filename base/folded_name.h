// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vantrell {

/// The name as file systems that fold names may see it: without letter case, composed in one way (Unicode's NFKC
/// casefolding), without blanks and dots at its end. Names that are one name on any such file system have equal folded
/// names; the reverse need not be so. A name that is not UTF-8 stays as it is, but for its end.
[[nodiscard]] std::string foldedName(std::string_view name);

}  // namespace vantrell
