// SPDX-License-Identifier: MIT
#include "platform/files/temporary_name.h"

#include <random>

namespace vantrell {

namespace {
constexpr std::string_view kPrefix = ".zep-";
constexpr std::string_view kDigits = "0123456789abcdef";
constexpr std::size_t kDigitCount = 16;
}  // namespace

std::string makeTemporaryName() {
    std::random_device chance;
    std::string name(kPrefix);
    for (std::size_t i = 0; i < kDigitCount; i += 8) {
        for (auto [bits, left] = std::pair(chance(), 8); left > 0; --left, bits >>= 4U) name += kDigits[bits & 15U];
    }
    return name;
}

bool isTemporaryName(std::string_view name) {
    return name.size() == kPrefix.size() + kDigitCount && name.starts_with(kPrefix) &&
           name.find_first_not_of(kDigits, kPrefix.size()) == std::string_view::npos;
}

}  // namespace vantrell
