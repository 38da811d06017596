// SPDX-License-Identifier: MIT
#include "passwords/password_fixture.h"
#include "support/documented_blocks.h"

namespace vantrell::test {
namespace {

class DocumentedPasswordFile : public PasswordFixture {
protected:
    std::string activePassword() {
        (void)loop.valueOf(store.findCurrentPassword());
        return state.ActivePassword;
    }
};

TEST_F(DocumentedPasswordFile, GivesTheDocumentedPassword) {
    const auto blocks = documentedBlocks("formats.md", "sql");
    ASSERT_EQ(blocks.size(), 2U);
    const Strings active = {"secret", "12345"};
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        std::string sql;
        for (const std::string& line : blocks[i]) sql += line + '\n';
        makeFile(sql);
        EXPECT_EQ(activePassword(), active[i]);
    }
    EXPECT_TRUE(save("b", true));
    EXPECT_EQ(activePassword(), "b");
    EXPECT_EQ(OtherProgram(file).column("SELECT Id || Note || Password || Active FROM EncDecPasswords"),
              (Strings{"1not chosena0", "2keptb1", "3kept123450", "4too latec0"}));
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(DocumentedPasswordFile, IsTheSuppliedOne) {
    EXPECT_EQ(OtherProgram(file).column("SELECT sql || ';' FROM sqlite_schema"),
              Strings{documentedBlocks("formats.md", "sql").at(0).at(0)});
    EXPECT_EQ(activePassword(), "");
}

TEST_F(DocumentedPasswordFile, MustHaveAnActivePasswordInAscii) {
    fill("INSERT INTO EncDecPasswords VALUES ('m\u00fcller', 1), ('secret', 1)");
    EXPECT_EQ(activePassword(), "");
    EXPECT_NE(theBox().text.find("outside ASCII"), std::string::npos);
}

}  // namespace
}  // namespace vantrell::test
