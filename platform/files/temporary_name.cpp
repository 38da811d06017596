// SPDX-License-Identifier: MIT
#include "platform/files/temporary_name.h"

#include <array>

namespace vantrell {

namespace {
constexpr std::string_view kPrefix = ".zep-";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kDigitCount = 16;
}  // namespace

std::string makeTemporaryName(Kernel& kernel) {
    std::array<std::byte, kDigitCount / 2> chance{};
    // Without chance the name may be taken, which whoever uses it is told: a taken name is never replaced.
    static_cast<void>(kernel.getrandom(chance));
    std::string name(kPrefix);
    for (const std::byte byte : chance) {
        name += kDigits[std::to_integer<std::size_t>(byte >> 4U)];
        name += kDigits[std::to_integer<std::size_t>(byte & std::byte{15})];
    }
    return name;
}

bool isTemporaryName(std::string_view name) {
    return name.size() == kPrefix.size() + kDigitCount && name.starts_with(kPrefix) &&
           name.find_first_not_of(kDigits, kPrefix.size()) == std::string_view::npos;
}

}  // namespace vantrell
