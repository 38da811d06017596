// SPDX-License-Identifier: MIT
#include "passwords/store_objects.h"

#include <utility>

namespace vantrell {

namespace {

constexpr int kConnectionTimeoutSeconds = 10;
constexpr int kCommandTimeoutSeconds = 5;

}  // namespace

std::string StoreObjects::connectionString(const std::string& databaseType, const std::string& dataSource,
                                           const std::string& userName, const std::string& userPassword) {
    if (databaseType == "ORACLE") {
        return "Driver={Microsoft ODBC Driver For Oracle};ConnectString=" + dataSource + ";UID=" + userName +
               ";PWD=" + userPassword + ";";
    }
    if (databaseType == "MSACCESS") {
        return "Provider=Microsoft.Jet.OLEDB.4.0;data source=" + dataSource +
               ";Persist Security Info=False;Persist Security Info=False";
    }
    return {};
}

Task<DatabaseError> StoreObjects::openConnection(std::string databaseType, std::string dataSource, std::string userName,
                                                 std::string userPassword) {
    const auto connection = database_.makeConnection();
    connection->setMode(adModeReadWrite);
    connection->setConnectionTimeout(kConnectionTimeoutSeconds);
    connection->setCommandTimeout(kCommandTimeoutSeconds);
    connection->setCursorLocation(adUseClient);
    StoreConnection_ = connection;
    co_return co_await connection->open(connectionString(databaseType, dataSource, userName, userPassword), {}, {},
                                        adOptionUnspecified);
}

void StoreObjects::setParameters(StoreParameters parameters) {
    parameters_ = std::move(parameters);
    ListingQuery_ = "SELECT * from " + parameters_.TableName;
}

Task<DatabaseError> StoreObjects::reconnectPasswordStore() {
    closeRecordset();
    if (isInTransaction_) co_return DatabaseError{};
    if (StoreConnection_) StoreConnection_->close();
    co_return co_await openConnection(parameters_.DatabaseType, parameters_.DataSource, parameters_.UserName,
                                      parameters_.UserPassword);
}

Task<DatabaseError> StoreObjects::openRecordset(OpenMode mode, std::string query) {
    closeRecordset();
    if (!StoreRecordset_) StoreRecordset_ = database_.makeRecordset();
    const bool isGiven = std::exchange(UseGivenQuery_, false);
    return openAs(mode, isGiven ? std::move(query) : ListingQuery_);
}

Task<DatabaseError> StoreObjects::openAs(OpenMode mode, std::string query) {
    const auto connection = StoreConnection_;
    if (mode == OpenMode::command) {
        if (!connection) co_return DatabaseError{adErrObjectClosed, "The password file is not open."};
        ExecuteResult executed = co_await connection->execute(std::move(query), adOptionUnspecified);
        if (executed.recordset) StoreRecordset_ = executed.recordset;
        co_return executed.error;
    }
    const auto records = StoreRecordset_;
    const bool isSnapshot = mode == OpenMode::detachedSnapshot;
    records->setActiveConnection(connection);
    records->setSource(std::move(query));
    records->setCursorType(isSnapshot ? adOpenForwardOnly : adOpenKeyset);
    records->setLockType(isSnapshot ? adLockReadOnly : adLockOptimistic);
    records->setCursorLocation(mode == OpenMode::updatableServerSide ? adUseServer : adUseClient);
    DatabaseError error = co_await records->open();
    if (isSnapshot && !error) records->setActiveConnection(nullptr);
    co_return error;
}

Task<DatabaseError> StoreObjects::beginTransaction() {
    const auto connection = StoreConnection_;
    if (!connection) co_return DatabaseError{adErrObjectClosed, "The password file is not open."};
    DatabaseError error = co_await connection->beginTrans();
    isInTransaction_ = !error;
    co_return error;
}

Task<DatabaseError> StoreObjects::commitTransaction() {
    const auto connection = StoreConnection_;
    if (!connection) co_return DatabaseError{adErrObjectClosed, "The password file is not open."};
    DatabaseError error = co_await connection->commitTrans();
    if (!error) isInTransaction_ = false;
    co_return error;
}

void StoreObjects::rollbackTransaction() {
    if (std::exchange(isInTransaction_, false) && StoreConnection_) StoreConnection_->rollbackTrans();
}

void StoreObjects::closeRecordset() {
    if (StoreRecordset_) StoreRecordset_->close();
}

void StoreObjects::close() {
    closeRecordset();
    rollbackTransaction();
    if (StoreConnection_) StoreConnection_->close();
    StoreRecordset_.reset();
    StoreConnection_.reset();
}

}  // namespace vantrell
