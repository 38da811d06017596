// SPDX-License-Identifier: MIT
#include "base/display_text.h"

#include <cstddef>
#include <cstdint>

namespace vantrell {

namespace {

std::uint8_t byteAt(std::string_view bytes, std::size_t index) { return static_cast<std::uint8_t>(bytes[index]); }

/// The length in bytes of a sequence that begins with this byte; 0 when no sequence can begin with it.
std::size_t announcedLength(std::uint8_t lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 0;
}

/// UTF-8 forbids sequences that are longer than needed, surrogates, and code points above U+10FFFF. The second byte
/// shows all three.
bool mayFollow(std::uint8_t lead, std::uint8_t second) {
    const std::uint8_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    return second >= lowest && second <= highest;
}

/// The length of the valid sequence at `index`, or 0.
std::size_t sequenceLength(std::string_view bytes, std::size_t index) {
    const std::uint8_t lead = byteAt(bytes, index);
    const std::size_t length = announcedLength(lead);
    if (length == 0 || bytes.size() - index < length) return 0;
    if (length > 1 && !mayFollow(lead, byteAt(bytes, index + 1))) return 0;
    for (std::size_t next = 2; next < length; ++next) {
        if ((byteAt(bytes, index + next) & 0xC0) != 0x80) return 0;
    }
    return length;
}

bool isShownAsItIs(std::string_view sequence) {
    const std::uint8_t lead = byteAt(sequence, 0);
    if (sequence.size() == 1) return lead >= 0x20 && lead != 0x7F;
    const bool isC1 = lead == 0xC2 && byteAt(sequence, 1) <= 0x9F;
    return !isC1 && sequence != "\u2028" && sequence != "\u2029";
}

void appendEscaped(std::string& text, std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (const char byte : bytes) {
        const auto value = static_cast<std::uint8_t>(byte);
        text.append({'\\', 'x', kDigits[value >> 4U], kDigits[value & 0x0FU]});
    }
}

}  // namespace

std::string displayText(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t index = 0; index < bytes.size();) {
        const std::size_t length = sequenceLength(bytes, index);
        const std::string_view sequence = bytes.substr(index, length == 0 ? 1 : length);
        if (length != 0 && isShownAsItIs(sequence)) {
            text.append(sequence);
        } else {
            appendEscaped(text, sequence);
        }
        index += sequence.size();
    }
    return text;
}

}  // namespace vantrell
