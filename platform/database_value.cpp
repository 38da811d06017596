// SPDX-License-Identifier: MIT
#include "platform/database_value.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace vantrell {

namespace {

// Beyond this not every whole number is a double.
constexpr double kLargestExactWhole = 9007199254740992.0;

std::string textOfNumber(double number) {
    if (std::abs(number) < kLargestExactWhole && std::trunc(number) == number) {
        return std::to_string(static_cast<std::int64_t>(number));
    }
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
    return {buffer.data(), end};
}

std::string_view withoutFrame(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    text = text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
    const bool framed = text.size() > 2 && text.front() == '#' && text.back() == '#';
    return framed ? text.substr(1, text.size() - 2) : text;
}

std::string inLowerCase(std::string_view text) {
    std::string lower(text);
    for (char& letter : lower) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return lower;
}

bool booleanOfText(std::string_view text) {
    const std::string word = inLowerCase(withoutFrame(text));
    for (const std::string_view yes : {"true", "yes", "on", "t", "y"}) {
        if (word == yes) return true;
    }
    double number = 0;
    const auto parsed = std::from_chars(word.data(), word.data() + word.size(), number);
    return parsed.ec == std::errc() && parsed.ptr == word.data() + word.size() && number != 0;
}

struct ToText {
    std::string operator()(std::monostate) const { return {}; }
    std::string operator()(bool value) const { return value ? "True" : "False"; }
    std::string operator()(std::int64_t value) const { return std::to_string(value); }
    std::string operator()(double value) const { return textOfNumber(value); }
    std::string operator()(const std::string& value) const { return value; }
    std::string operator()(const Blob& value) const { return value.bytes; }
};

struct ToBoolean {
    bool operator()(std::monostate) const { return false; }
    bool operator()(bool value) const { return value; }
    bool operator()(std::int64_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(const std::string& value) const { return booleanOfText(value); }
    bool operator()(const Blob& value) const { return booleanOfText(value.bytes); }
};

}  // namespace

std::string textOf(const DatabaseValue& value) { return std::visit(ToText{}, value); }

bool booleanOf(const DatabaseValue& value) { return std::visit(ToBoolean{}, value); }

}  // namespace vantrell
