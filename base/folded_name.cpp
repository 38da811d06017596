// SPDX-License-Identifier: MIT
#include "base/folded_name.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <iterator>

namespace vantrell {

namespace {

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string foldedName(std::string_view name) {
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) name.remove_suffix(1);
    std::string folded;
    if (isAscii(name)) {
        std::transform(name.begin(), name.end(), std::back_inserter(folded), lower);
        return folded;
    }
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2* folding = icu::Normalizer2::getNFKCCasefoldInstance(error);
    const icu::StringPiece piece(name.data(), static_cast<std::int32_t>(name.size()));
    icu::StringByteSink<std::string> sink(&folded);
    if (U_SUCCESS(error)) folding->normalizeUTF8(0, piece, sink, nullptr, error);
    return U_SUCCESS(error) ? folded : std::string(name);
}

}  // namespace vantrell
