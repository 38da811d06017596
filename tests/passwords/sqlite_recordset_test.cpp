// SPDX-License-Identifier: MIT
#include "passwords/password_fixture.h"

namespace vantrell::test {
namespace {

/// Three records: a, b and c.
class SqliteRecordsetTest : public PasswordFixture {
protected:
    SqliteRecordsetTest() {
        fill("INSERT INTO EncDecPasswords VALUES ('a', 0), ('b', 0), ('c', 0)");
        const std::string source = StoreObjects::connectionString("MSACCESS", file, "", "");
        EXPECT_FALSE(loop.valueOf(connection->open(source, "", "", adOptionUnspecified)));
        records->setActiveConnection(connection);
        records->setSource("SELECT * from EncDecPasswords");
    }
    DatabaseError open(LockTypeEnum lock) {
        records->setLockType(lock);
        return loop.valueOf(records->open());
    }
    std::string password() { return textOf(records->value("Password").value); }

    std::shared_ptr<Connection> connection = database.makeConnection();
    std::shared_ptr<Recordset> records = database.makeRecordset();
};

TEST_F(SqliteRecordsetTest, DetachedRecordsOutliveTheConnection) {
    EXPECT_EQ(records->recordCount(), -1);
    ASSERT_FALSE(open(adLockReadOnly));
    records->setActiveConnection(nullptr);
    connection->close();
    EXPECT_EQ(records->state(), adStateOpen);
    EXPECT_EQ(records->recordCount(), 3);
    EXPECT_EQ(password(), "a");
    EXPECT_FALSE(records->setValue("Active", true));
    EXPECT_EQ(loop.valueOf(records->update()).number, adErrFeatureNotAvailable);
}

TEST_F(SqliteRecordsetTest, AttachedRecordsCloseWithTheConnection) {
    ASSERT_FALSE(open(adLockOptimistic));
    connection->close();
    EXPECT_EQ(records->state(), adStateClosed);
    EXPECT_TRUE(records->eof());
    EXPECT_EQ(records->value("Password").error.number, adErrObjectClosed);
    EXPECT_NE(loop.valueOf(records->deleteRecord(adAffectCurrent)).number, 0);
    EXPECT_NE(loop.valueOf(records->requery(adOptionUnspecified)).number, 0);
}

TEST_F(SqliteRecordsetTest, MovesOnFromADeletedRecord) {
    ASSERT_FALSE(open(adLockOptimistic));
    records->moveNext();
    ASSERT_FALSE(loop.valueOf(records->deleteRecord(adAffectCurrent)));
    EXPECT_EQ(records->value("Password").error.number, adErrNoCurrentRecord);
    EXPECT_FALSE(records->eof());
    EXPECT_FALSE(loop.valueOf(records->update()));
    records->moveNext();
    EXPECT_EQ(password(), "c");
    ASSERT_FALSE(loop.valueOf(records->deleteRecord(adAffectCurrent)));
    records->moveNext();
    EXPECT_TRUE(records->eof());
    EXPECT_EQ(stored(), Strings{"a=0"});
}

TEST_F(SqliteRecordsetTest, RecordThatIsGoneIsNotUpdated) {
    ASSERT_FALSE(open(adLockOptimistic));
    fill("DELETE FROM EncDecPasswords WHERE Password = 'a'");
    ASSERT_FALSE(records->setValue("Active", true));
    EXPECT_EQ(loop.valueOf(records->update()).number, kRowCannotBeLocated);
    EXPECT_EQ(loop.valueOf(records->deleteRecord(adAffectCurrent)).number, kRowCannotBeLocated);
    EXPECT_EQ(stored(), (Strings{"b=0", "c=0"}));
}

TEST_F(SqliteRecordsetTest, ChangeIsDroppedByMovingOn) {
    ASSERT_FALSE(open(adLockOptimistic));
    ASSERT_FALSE(records->setValue("Active", true));
    records->moveNext();
    EXPECT_FALSE(loop.valueOf(records->update()));
    EXPECT_EQ(stored(), (Strings{"a=0", "b=0", "c=0"}));
}

TEST_F(SqliteRecordsetTest, NewRecordBecomesTheCurrentOneAndCanBeChanged) {
    ASSERT_FALSE(open(adLockOptimistic));
    ASSERT_FALSE(records->addNew());
    ASSERT_FALSE(records->setValue("password", std::string("d\0e", 3)));
    ASSERT_FALSE(records->setValue("active", false));
    ASSERT_FALSE(loop.valueOf(records->update()));
    EXPECT_EQ(password(), std::string("d\0e", 3));
    ASSERT_FALSE(records->setValue("Active", true));
    ASSERT_FALSE(loop.valueOf(records->update()));
    ASSERT_FALSE(loop.valueOf(records->requery(adOptionUnspecified)));
    EXPECT_EQ(records->recordCount(), 4);
    EXPECT_EQ(OtherProgram(file).column("SELECT hex(Password) FROM EncDecPasswords WHERE Active"), Strings{"640065"});
}

TEST_F(SqliteRecordsetTest, ReadOnlyRecordsAreNotChanged) {
    ASSERT_FALSE(open(adLockReadOnly));
    EXPECT_EQ(records->addNew().number, adErrFeatureNotAvailable);
    EXPECT_EQ(loop.valueOf(records->deleteRecord(adAffectCurrent)).number, adErrFeatureNotAvailable);
    const ExecuteResult executed = loop.valueOf(connection->execute("SELECT 1 AS One", adOptionUnspecified));
    ASSERT_FALSE(executed.error);
    EXPECT_EQ(textOf(executed.recordset->value("one").value), "1");
    EXPECT_EQ(executed.recordset->value("Two").error.number, adErrItemNotFound);
    EXPECT_EQ(loop.valueOf(connection->execute("SELEKT", adOptionUnspecified)).error.number, kErrorsInCommand);
}

}  // namespace
}  // namespace vantrell::test
