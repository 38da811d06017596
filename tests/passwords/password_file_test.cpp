// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

using PasswordFileTest = PasswordFixture;

std::string damaged() {
    std::string bytes(suppliedPasswordFile());
    return bytes.replace(100, 3000, 3000, '\x5A');
}

TEST_F(PasswordFileTest, ThatCannotBeUsedIsReportedAndLeftAsItIs) {
    const std::pair<std::string, std::string> files[] = {
        {"", "is empty"},
        {"SQLite", "is not a database"},
        {std::string(5000, 'x'), "is not a database"},
        {std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4076, '\1'), "Access"},
        {std::string("\0\1\0\0Standard ACE DB\0", 20) + std::string(4076, '\1'), "Access"},
        {damaged(), "is damaged"}};
    for (const auto& [bytes, words] : files) {
        writeFile(file, bytes);
        boxes.informed.clear();
        EXPECT_EQ(current(), "none was read");
        expectErrorBox(kUnspecifiedError, words);
        EXPECT_FALSE(save("new", true));
        EXPECT_FALSE(erase("new"));
        EXPECT_EQ(readFile(file), bytes);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(bench.state.AppFolder), {}), 1);
    }
}

TEST_F(PasswordFileTest, ThatRefusesASaveIsLeftAsItIs) {
    const struct {
        const char* sql;
        const char* password;
        std::int32_t error;
        const char* words;
    } files[] = {
        {"CREATE TABLE Others (Password text, Active boolean)", "new", kTableDoesNotExist, "no such table: EncDec"},
        {"CREATE TABLE EncDecPasswords (Password text); INSERT INTO EncDecPasswords VALUES ('a')", "new",
         adErrItemNotFound, "\"Active\""},
        {"CREATE TABLE EncDecPasswords (Password INTEGER, Active); INSERT INTO EncDecPasswords VALUES (7, 1)", "007",
         kErrorsOccurred, "\"Password\""},
        {"CREATE TABLE EncDecPasswords (Password CHECK (length(Password) < 5), Active);"
         "INSERT INTO EncDecPasswords VALUES ('old', 1)",
         "too long", kIntegrityViolation, "CHECK"},
        {"CREATE TABLE t (a, b); INSERT INTO t VALUES ('old', 1);"
         "CREATE VIEW EncDecPasswords AS SELECT a AS Password, b AS Active FROM t",
         "new", kRowCannotBeLocated, "Row cannot be located"}};
    for (const auto& [sql, password, error, words] : files) {
        makeFile(sql);
        const std::string before = readFile(file);
        boxes.informed.clear();
        EXPECT_FALSE(save(password, true));
        expectErrorBox(error, words);
        EXPECT_EQ(readFile(file), before);
    }
    EXPECT_EQ(current(), "old") << "a view can be read";
}

TEST_F(PasswordFileTest, IsReadInTheOrderOfThePlainListing) {
    makeFile(
        "CREATE TABLE EncDecPasswords (Password text, Active boolean);"
        "CREATE UNIQUE INDEX Cover ON EncDecPasswords (Password, Active);"
        "INSERT INTO EncDecPasswords VALUES ('z', 1), ('m', 0), ('a', 1)");
    EXPECT_EQ(loop.valueOf(store.readRecords()), (std::vector<PasswordRecord>{{"z", true}, {"m", false}, {"a", true}}));
    EXPECT_EQ(current(), "z");
}

TEST(BooleanOf, TakesWhatOthersWriteForTrue) {
    using Values = std::vector<DatabaseValue>;
    for (const auto& yes : Values{true, std::int64_t{-1}, -1.0, "True", "YES", "on", "#TRUE#", " -1 ", "1.0"})
        EXPECT_TRUE(booleanOf(yes)) << textOf(yes);
    for (const auto& no : Values{std::monostate{}, false, 0.0, "", "False", "No", "#FALSE#", "0", "#", "truely"})
        EXPECT_FALSE(booleanOf(no)) << textOf(no);
}

}  // namespace
}  // namespace vantrell::test
