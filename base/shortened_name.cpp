// SPDX-License-Identifier: MIT
#include "base/shortened_name.h"

#include <algorithm>

namespace vantrell {

namespace {

constexpr std::size_t kEnd = 48;

bool isInsideCharacter(std::string_view text, std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U;
}

}  // namespace

std::string shortenedName(std::string_view name, std::size_t longest, unsigned number) {
    if (name.size() <= longest) return std::string(name);
    const std::string mark = "~" + (number == 0 ? std::string() : std::to_string(number));
    const std::size_t room = longest - std::min(longest, mark.size());
    const std::size_t behind = std::min(kEnd, room / 2);
    std::size_t head = room - behind;
    std::size_t tail = name.size() - behind;
    // Bytes that are no characters of UTF-8 are cut anywhere.
    constexpr std::size_t kLongestCharacter = 4;
    for (std::size_t i = 0; i < kLongestCharacter && head > 0 && isInsideCharacter(name, head); ++i) --head;
    for (std::size_t i = 0; i < kLongestCharacter && isInsideCharacter(name, tail); ++i) ++tail;
    return std::string(name.substr(0, head)) + mark + std::string(name.substr(tail));
}

}  // namespace vantrell
