// SPDX-License-Identifier: MIT
#include "core/display_text.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrell::test {

using namespace std::string_literals;

TEST(DisplayText, LeavesReadableTextAlone) {
    for (const std::string& text :
         {""s, "/srv/in/report.pdf"s, R"(back\slash and \x41)"s, "Prüfung \u00A0 日本 \U0001F5CE"s}) {
        EXPECT_EQ(displayText(text), text);
    }
}

TEST(DisplayText, KeepsOneEventOnOneLine) {
    EXPECT_EQ(displayText("a\r\nb\tc\0d\x7F"s), R"(a\x0D\x0Ab\x09c\x00d\x7F)");
    EXPECT_EQ(displayText("a\u0085b\u009Fc"), R"(a\xC2\x85b\xC2\x9Fc)");
    EXPECT_EQ(displayText("a\u2028b\u2029c\u2027"), "a\\xE2\\x80\\xA8b\\xE2\\x80\\xA9c\u2027");
}

TEST(DisplayText, ShowsBytesThatAreNotUtf8) {
    EXPECT_EQ(displayText("M\xFCller"), R"(M\xFCller)");
    EXPECT_EQ(displayText("\x80x\xBF"), R"(\x80x\xBF)");
    EXPECT_EQ(displayText("\xC0\xAF"), R"(\xC0\xAF)") << "'/' written too long";
    EXPECT_EQ(displayText("\xE0\x80\xAF\xF0\x8F\xBF\xBF"), R"(\xE0\x80\xAF\xF0\x8F\xBF\xBF)");
    EXPECT_EQ(displayText("\xED\xA0\x80"), R"(\xED\xA0\x80)") << "a surrogate";
    EXPECT_EQ(displayText("\xF4\x90\x80\x80"), R"(\xF4\x90\x80\x80)") << "above U+10FFFF";
}

TEST(DisplayText, GoesOnBehindATornCharacter) {
    EXPECT_EQ(displayText("\xE2\x82"), R"(\xE2\x82)");
    EXPECT_EQ(displayText("\xE2\x82z"), R"(\xE2\x82z)");
    EXPECT_EQ(displayText("\xE2\u20AC"), "\\xE2\u20AC");
}

}  // namespace vantrell::test
