// SPDX-License-Identifier: MIT
#include "base/display_text.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrell::test {

using namespace std::string_literals;

TEST(DisplayText, LeavesReadableTextAloneAndShowsTheRestAsBytes) {
    for (const std::string& text :
         {"/srv/in/report.pdf"s, R"(back\slash and \x41)"s, "Prüfung \u00A0 日本 \U0001F5CE"s})
        EXPECT_EQ(displayText(text), text);
    const std::pair<std::string, std::string> cases[] = {
        {"a\r\nb\tc\0d\x7F"s, R"(a\x0D\x0Ab\x09c\x00d\x7F)"},
        {"a\u0085b\u009Fc", R"(a\xC2\x85b\xC2\x9Fc)"},
        {"a\u2028b\u2029c\u2027", "a\\xE2\\x80\\xA8b\\xE2\\x80\\xA9c\u2027"},
        {"M\xFCller", R"(M\xFCller)"},
        {"\x80x\xBF", R"(\x80x\xBF)"},
        {"\xC0\xAF", R"(\xC0\xAF)"},          // '/' written too long
        {"\xED\xA0\x80", R"(\xED\xA0\x80)"},  // a surrogate
        {"\xF4\x90\x80\x80", R"(\xF4\x90\x80\x80)"},
        {"\xE2\x82", R"(\xE2\x82)"},
        {"\xE2\x82z", R"(\xE2\x82z)"},
        {"\xE2\u20AC", "\\xE2\u20AC"},
    };
    for (const auto& [bytes, shown] : cases) EXPECT_EQ(displayText(bytes), shown);
}

}  // namespace vantrell::test
