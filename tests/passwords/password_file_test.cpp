// SPDX-License-Identifier: MIT
#include <unistd.h>

#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

// Files that cannot be used: told clearly, and left as they are.

struct BadFile {
    std::string name;
    std::string bytes;
    std::string words;
};

class UnusablePasswordFile : public PasswordFixture, public testing::WithParamInterface<BadFile> {};

TEST_P(UnusablePasswordFile, IsReportedAndLeftAsItIs) {
    writeFile(file, GetParam().bytes);
    state.ActivePassword = "before";
    EXPECT_FALSE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "before");
    expectErrorBox(kUnspecifiedError, GetParam().words);
    EXPECT_FALSE(save("new", true));
    EXPECT_FALSE(erase("new"));
    EXPECT_EQ(readFile(file), GetParam().bytes);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

std::string damaged() {
    std::string bytes(suppliedPasswordFile());
    bytes.replace(100, 3000, 3000, '\x5A');
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(
    Files, UnusablePasswordFile,
    testing::Values(BadFile{"Empty", "", "is empty"}, BadFile{"Short", "SQLite", "is not a database"},
                    BadFile{"Text", std::string(5000, 'x'), "is not a database"},
                    BadFile{"Jet", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4076, '\1'), "Access"},
                    BadFile{"Ace", std::string("\0\1\0\0Standard ACE DB\0", 20) + std::string(4076, '\1'), "Access"},
                    BadFile{"Damaged", damaged(), "is damaged"}),
    [](const auto& info) { return info.param.name; });

using ForeignPasswordFile = PasswordFixture;

TEST_F(ForeignPasswordFile, WithoutTheTableIsReported) {
    makeFile("CREATE TABLE Others (Password text, Active boolean)");
    const std::string before = readFile(file);
    EXPECT_FALSE(save("new", true));
    expectErrorBox(kTableDoesNotExist, "no such table: EncDecPasswords");
    EXPECT_EQ(readFile(file), before);
}

TEST_F(ForeignPasswordFile, WithoutAColumnIsReported) {
    makeFile("CREATE TABLE EncDecPasswords (Password text); INSERT INTO EncDecPasswords VALUES ('a')");
    const std::string before = readFile(file);
    state.ActivePassword = "before";
    EXPECT_FALSE(loop.valueOf(store.findCurrentPassword()));
    expectErrorBox(adErrItemNotFound, "\"Active\"");
    EXPECT_EQ(state.ActivePassword, "before");
    EXPECT_FALSE(save("new", true));
    EXPECT_EQ(readFile(file), before);
}

TEST_F(ForeignPasswordFile, FolderInItsPlaceIsReported) {
    const auto connection = database.makeConnection();
    const std::string source = StoreObjects::connectionString("MSACCESS", folder.path(), "", "");
    const DatabaseError error = loop.valueOf(connection->open(source, "", "", adOptionUnspecified));
    EXPECT_NE(error.description.find("folder"), std::string::npos) << error.description;
    EXPECT_EQ(connection->state(), adStateClosed);
}

TEST_F(ForeignPasswordFile, ReadOnlyFileIsReadButNotWritten) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may write every file";
    fill("INSERT INTO EncDecPasswords VALUES ('a', 1)");
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "a");
    EXPECT_FALSE(save("b", true));
    expectErrorBox(kPermissionDenied, "may not be written");
    EXPECT_EQ(stored(), Strings{"a=1"});
}

TEST_F(ForeignPasswordFile, UnreadableFileIsReported) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may read every file";
    std::filesystem::permissions(file, std::filesystem::perms::none);
    EXPECT_FALSE(loop.valueOf(store.findCurrentPassword()));
    expectErrorBox(kUnspecifiedError, "Permission denied");
}

TEST_F(ForeignPasswordFile, MayHaveItsOwnColumnsInAnyOrder) {
    makeFile(
        "CREATE TABLE encdecpasswords (_rowid_ text, ACTIVE, Note text DEFAULT 'none', password, Id INTEGER PRIMARY "
        "KEY AUTOINCREMENT); INSERT INTO EncDecPasswords (Active, Password, Note) VALUES ('Yes', 12345, 'kept')");
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "12345");
    EXPECT_TRUE(save("new", true));
    EXPECT_TRUE(save("12345", false));
    EXPECT_EQ(stored(), (Strings{"12345=0", "new=1"}));
    EXPECT_EQ(OtherProgram(file).column("SELECT Note FROM EncDecPasswords"), (Strings{"kept", "none"}));
}

TEST_F(ForeignPasswordFile, MayHaveNoRowIds) {
    makeFile(
        "CREATE TABLE EncDecPasswords (Owner, Password text, Active boolean, PRIMARY KEY (Password)) WITHOUT ROWID;"
        "INSERT INTO EncDecPasswords VALUES ('x', 'b', 1), ('y', 'a', 1)");
    EXPECT_TRUE(save("b", true));
    EXPECT_TRUE(save("c", false));
    EXPECT_EQ(stored(), (Strings{"a=0", "b=1", "c=0"}));
    EXPECT_TRUE(erase("a"));
    EXPECT_EQ(stored(), (Strings{"b=1", "c=0"}));
}

TEST_F(ForeignPasswordFile, RowsKeepTheOrderOfThePlainListing) {
    makeFile(
        "CREATE TABLE EncDecPasswords (Password text, Active boolean);"
        "CREATE UNIQUE INDEX Cover ON EncDecPasswords (Password, Active);"
        "INSERT INTO EncDecPasswords VALUES ('z', 1), ('m', 0), ('a', 1)");
    const Strings plain = OtherProgram(file).column("SELECT * from EncDecPasswords");
    StoreObjects objects(database);
    objects.setParameters({"MSACCESS", file, "EncDecPasswords", "", ""});
    ASSERT_FALSE(loop.valueOf(objects.connectPasswordStore()));
    for (const OpenMode mode : {OpenMode::detachedSnapshot, OpenMode::updatableClientSide, OpenMode::command}) {
        ASSERT_FALSE(loop.valueOf(objects.openRecordset(mode, "not run")));
        Strings listed;
        for (const auto records = objects.recordset(); !records->eof(); records->moveNext()) {
            listed.push_back(textOf(records->value("PASSWORD").value));
        }
        EXPECT_EQ(listed, plain);
    }
}

TEST_F(ForeignPasswordFile, NeverKeepsAPasswordOtherThanTheOneEntered) {
    makeFile(
        "CREATE TABLE EncDecPasswords (Password INTEGER, Active boolean);"
        "INSERT INTO EncDecPasswords VALUES (7, 1)");
    EXPECT_FALSE(save("007", true));
    expectErrorBox(kErrorsOccurred, "\"Password\"");
    EXPECT_EQ(stored(), Strings{"7=1"});
    EXPECT_TRUE(save("8", true));
    EXPECT_EQ(stored(), (Strings{"7=0", "8=1"}));
}

TEST_F(ForeignPasswordFile, RefusedRecordUndoesTheWholeSave) {
    makeFile(
        "CREATE TABLE EncDecPasswords (Password text CHECK (length(Password) < 5), Active boolean);"
        "INSERT INTO EncDecPasswords VALUES ('old', 1)");
    EXPECT_FALSE(save("too long", true));
    expectErrorBox(kIntegrityViolation, "CHECK");
    EXPECT_EQ(stored(), Strings{"old=1"});
}

TEST_F(ForeignPasswordFile, ViewIsReadButNotWritten) {
    makeFile(
        "CREATE TABLE t (a, b); INSERT INTO t VALUES ('old', 1);"
        "CREATE VIEW EncDecPasswords AS SELECT a AS Password, b AS Active FROM t");
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "old");
    EXPECT_FALSE(save("new", true));
    EXPECT_EQ(boxes.informed.size(), 1u);
    EXPECT_EQ(stored(), Strings{"old=1"});
}

TEST(BooleanOf, TakesWhatOthersWriteForTrue) {
    for (const DatabaseValue& yes : std::vector<DatabaseValue>{
             true, std::int64_t{1}, std::int64_t{-1}, -1.0, std::string("True"), std::string("YES"), std::string("on"),
             std::string("#TRUE#"), std::string(" -1 "), std::string("1.0"), Blob{"true"}}) {
        EXPECT_TRUE(booleanOf(yes)) << textOf(yes);
    }
    for (const DatabaseValue& no : std::vector<DatabaseValue>{
             std::monostate{}, false, std::int64_t{0}, 0.0, std::string(), std::string("False"), std::string("No"),
             std::string("#FALSE#"), std::string("0"), std::string("0.0"), std::string("#"), std::string("truely")}) {
        EXPECT_FALSE(booleanOf(no)) << textOf(no);
    }
}

}  // namespace
}  // namespace vantrell::test
