// SPDX-License-Identifier: MIT
#include "passwords/password_fixture.h"
#include "support/documented_blocks.h"

namespace vantrell::test {
namespace {

using DocumentedPasswordFile = PasswordFixture;

TEST_F(DocumentedPasswordFile, GivesTheDocumentedPassword) {
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

}  // namespace
}  // namespace vantrell::test
