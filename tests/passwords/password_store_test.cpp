// SPDX-License-Identifier: MIT
#include "passwords/password_fixture.h"
#include "support/documented_blocks.h"

namespace vantrell::test {
namespace {

using PasswordStoreTest = PasswordFixture;

TEST_F(PasswordStoreTest, DocumentedFilesGiveTheDocumentedPassword) {
    const auto blocks = documentedBlocks("formats.md", "sql");
    ASSERT_EQ(blocks.size(), 2U);
    EXPECT_EQ(OtherProgram(file).column("SELECT sql || ';' FROM sqlite_schema"), Strings{blocks[0][0]});
    const Strings active = {"secret", "12345"};
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        std::string sql;
        for (const std::string& line : blocks[i]) sql += line + '\n';
        makeFile(sql);
        EXPECT_EQ(current(), active[i]);
    }
    EXPECT_TRUE(save("b", true));
    EXPECT_EQ(current(), "b");
    EXPECT_EQ(OtherProgram(file).column("SELECT Id || Note || Password || Active FROM EncDecPasswords"),
              (Strings{"1not chosena0", "2keptb1", "3kept123450", "4too latec0"}));
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(PasswordStoreTest, SavesKeepAtMostTheirOneActivePasswordAndNoneTwice) {
    const struct {
        const char* password;
        bool active;
        Strings stored;
    } saves[] = {{"one", true, {"one=1"}},
                 {"One", false, {"one=1", "One=0"}},
                 {"one ", true, {"one=0", "One=0", "one =1"}},
                 {"one", true, {"one=1", "One=0", "one =0"}},
                 {"one", false, {"one=0", "One=0", "one =0"}},
                 {"it's \"x\"; --", false, {"one=0", "One=0", "one =0", "it's \"x\"; --=0"}}};
    for (const auto& [password, active, after] : saves) {
        EXPECT_TRUE(save(password, active));
        EXPECT_EQ(stored(), after);
    }
    fill("UPDATE EncDecPasswords SET Active = 1");
    EXPECT_TRUE(save("One", false));
    EXPECT_EQ(stored(), (Strings{"one=1", "One=0", "one =1", "it's \"x\"; --=1"})) << "it touches no other record";
}

TEST_F(PasswordStoreTest, DeletedPasswordIsNotToBeFoundInTheFile) {
    EXPECT_TRUE(save("LongForgotten", true));
    EXPECT_NE(readFile(file).find("LongForgotten"), std::string::npos);
    EXPECT_TRUE(erase("LongForgotten"));
    EXPECT_EQ(readFile(file).find("LongForgotten"), std::string::npos);
}

TEST_F(PasswordStoreTest, FirstActivePasswordWinsAndNoneIsNone) {
    EXPECT_EQ(current(), "");
    fill("INSERT INTO EncDecPasswords VALUES ('a', 0), ('b', 1), ('c', 1)");
    EXPECT_EQ(current(), "b");
    fill("UPDATE EncDecPasswords SET Active = 0");
    EXPECT_EQ(current(), "");
    EXPECT_TRUE(boxes.informed.empty());
    fill("UPDATE EncDecPasswords SET Active = 1, Password = 'gr\xC3\xBCn' WHERE Password = 'a'");
    EXPECT_EQ(current(), "") << "it comes first, and it is not ASCII";
    EXPECT_NE(theBox().text.find("ASCII"), std::string::npos);
}

}  // namespace
}  // namespace vantrell::test
