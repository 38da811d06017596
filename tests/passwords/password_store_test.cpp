// SPDX-License-Identifier: MIT
#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

using PasswordStoreTest = PasswordFixture;

TEST_F(PasswordStoreTest, SuppliedFileIsEmptyAndPutsTheEditorIntoItsNewPasswordState) {
    EXPECT_TRUE(loop.valueOf(store.openPasswordStore()));
    EXPECT_TRUE(editor.addButtonShown);
    EXPECT_TRUE(editor.rows.empty());
    EXPECT_TRUE(boxes.informed.empty());
    EXPECT_EQ(readFile(file), suppliedPasswordFile());
}

TEST_F(PasswordStoreTest, SavingActiveLeavesExactlyThatOneActive) {
    EXPECT_TRUE(save("one", true));
    EXPECT_TRUE(save("two", false));
    EXPECT_EQ(stored(), (Strings{"one=1", "two=0"}));
    EXPECT_TRUE(save("three", true));
    EXPECT_EQ(stored(), (Strings{"one=0", "two=0", "three=1"}));
    EXPECT_TRUE(save("one", true));
    EXPECT_EQ(stored(), (Strings{"one=1", "two=0", "three=0"}));
    EXPECT_EQ(editor.rows, (Strings{"one=True", "two=False", "three=False"}));
}

TEST_F(PasswordStoreTest, SavingInactiveTouchesNoOtherRecord) {
    fill("INSERT INTO EncDecPasswords VALUES ('one', 1), ('two', 1)");
    EXPECT_TRUE(save("three", false));
    EXPECT_EQ(stored(), (Strings{"one=1", "two=1", "three=0"}));
    EXPECT_TRUE(save("one", false));
    EXPECT_EQ(stored(), (Strings{"one=0", "two=1", "three=0"}));
}

TEST_F(PasswordStoreTest, ComparesExactlyAndNeverStoresTwice) {
    for (const char* password : {"Secret", "secret", " secret", "secret ", "it's \"x\"; --", "secret"}) {
        EXPECT_TRUE(save(password, false));
    }
    EXPECT_EQ(stored(), (Strings{"Secret=0", "secret=0", " secret=0", "secret =0", "it's \"x\"; --=0"}));
}

TEST_F(PasswordStoreTest, DeletesTheFirstCopyOnly) {
    fill("INSERT INTO EncDecPasswords VALUES ('a', 0), ('twice', 1), ('twice', 0)");
    state.ActivePassword = "twice";
    EXPECT_TRUE(erase("twice"));
    EXPECT_EQ(stored(), (Strings{"a=0", "twice=0"}));
    EXPECT_EQ(state.ActivePassword, "twice");
    EXPECT_TRUE(erase("unknown"));
    EXPECT_TRUE(boxes.informed.empty());
    EXPECT_EQ(stored(), (Strings{"a=0", "twice=0"}));
}

TEST_F(PasswordStoreTest, DeletedPasswordIsNotToBeFoundInTheFile) {
    EXPECT_TRUE(save("LongForgotten", true));
    EXPECT_NE(readFile(file).find("LongForgotten"), std::string::npos);
    EXPECT_TRUE(erase("LongForgotten"));
    EXPECT_EQ(readFile(file).find("LongForgotten"), std::string::npos);
}

TEST_F(PasswordStoreTest, ReInitializingSaysThatTheTableIsEmpty) {
    EXPECT_TRUE(loop.valueOf(store.reInitializeRecordset()));
    EXPECT_EQ(theBox().text, "There is not any passwords defined.");
    EXPECT_EQ(theBox().title, "Product");
    EXPECT_TRUE(editor.addButtonShown);
}

TEST_F(PasswordStoreTest, ReadsAllRecordsInTheTablesOrder) {
    fill("INSERT INTO EncDecPasswords VALUES ('b', 0), ('a', 1)");
    const auto records = loop.valueOf(store.readRecords());
    EXPECT_EQ(records, (std::vector<PasswordRecord>{{"b", false}, {"a", true}}));
}

TEST_F(PasswordStoreTest, OneActivePasswordWinsAndNoneIsNone) {
    state.ActivePassword = "before";
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "");
    fill("INSERT INTO EncDecPasswords VALUES ('a', 0), ('b', 1), ('c', 1)");
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "b");
    fill("UPDATE EncDecPasswords SET Active = 0");
    EXPECT_TRUE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "");
}

TEST_F(PasswordStoreTest, ActivePasswordOutsideAsciiIsNone) {
    fill("INSERT INTO EncDecPasswords VALUES ('gr\xC3\xBCn', 1), ('green', 1)");
    state.ActivePassword = "before";
    EXPECT_FALSE(loop.valueOf(store.findCurrentPassword()));
    EXPECT_EQ(state.ActivePassword, "");
    EXPECT_NE(theBox().text.find("ASCII"), std::string::npos);
}

TEST_F(PasswordStoreTest, ConnectionStringDependsOnTheTypeExactly) {
    EXPECT_EQ(StoreObjects::connectionString("MSACCESS", "/d/f.mdb", "u", "p"),
              "Provider=Microsoft.Jet.OLEDB.4.0;data source=/d/f.mdb;Persist Security Info=False;Persist Security "
              "Info=False");
    EXPECT_EQ(StoreObjects::connectionString("ORACLE", "d", "u", "p"),
              "Driver={Microsoft ODBC Driver For Oracle};ConnectString=d;UID=u;PWD=p;");
    EXPECT_EQ(StoreObjects::connectionString("MsAccess", "d", "u", "p"), "");
    const auto connection = database.makeConnection();
    EXPECT_EQ(loop.valueOf(connection->open("", "", "", adOptionUnspecified)).number, adErrProviderNotFound);
}

TEST_F(PasswordStoreTest, DataFolderMayHoldWhatConnectionStringsAreMadeOf) {
    state.AppFolder = folder.makeFolder("a;b='c' \xFF?");
    std::filesystem::copy(file, state.AppFolder + "/EDPasswords.mdb");
    EXPECT_TRUE(save("there", true));
    EXPECT_EQ(OtherProgram(state.AppFolder + "/EDPasswords.mdb").column("SELECT Password FROM EncDecPasswords"),
              Strings{"there"});
}

// The lookup

TEST_F(PasswordStoreTest, LookUpClosesTheLoadedEditorAndTheFile) {
    fill("INSERT INTO EncDecPasswords VALUES ('b', 1)");
    state.UiLoading = false;
    EXPECT_EQ(lookUp(), "b");
    EXPECT_EQ(editor.unloaded, 1);
    EXPECT_EQ(editor.rows, Strings{"b=True"});
    EXPECT_EQ(store.editor(), nullptr);
    EXPECT_FALSE(state.UiLoading);
}

TEST_F(PasswordStoreTest, LookUpWithoutAnEditorShowsNone) {
    store.detachEditor(editor);
    fill("INSERT INTO EncDecPasswords VALUES ('b', 1)");
    EXPECT_EQ(lookUp(), "b");
    EXPECT_EQ(store.editor(), nullptr);
    EXPECT_TRUE(editor.rows.empty());
    fill("DELETE FROM EncDecPasswords");
    EXPECT_EQ(lookUp(), "");
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(PasswordStoreTest, MissingFileIsReportedAndNeverMade) {
    std::filesystem::remove(file);
    EXPECT_EQ(lookUp(), "");
    EXPECT_EQ(theBox().text, "Missing Data Base");
    EXPECT_EQ(theBox().title, "Vantrell");
    EXPECT_EQ(editor.unloaded, 1);
    EXPECT_FALSE(state.UiLoading);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
}  // namespace vantrell::test
