// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/database.h"

namespace vantrell {

/// How the records are opened; the numbers are those of the open mode.
enum class OpenMode : std::int16_t {
    detachedSnapshot = 0,
    updatableClientSide = 1,
    command = 2,
    updatableServerSide = 3
};

struct StoreParameters {
    std::string DatabaseType;
    std::string DataSource;
    std::string TableName;
    std::string UserName;
    std::string UserPassword;
};

/// The connection and the record set of the password store: one of each, made on first use.
class StoreObjects {
public:
    explicit StoreObjects(Database& database) : database_(database) {}
    StoreObjects(const StoreObjects&) = delete;
    StoreObjects& operator=(const StoreObjects&) = delete;

    /// Text for ADO's Open; empty for a type other than "ORACLE" and "MSACCESS".
    [[nodiscard]] static std::string connectionString(const std::string& databaseType, const std::string& dataSource,
                                                      const std::string& userName, const std::string& userPassword);

    /// To be set before anything is opened; `ListingQuery` follows from it.
    void setParameters(StoreParameters parameters);
    /// Opens the connection.
    Task<DatabaseError> connectPasswordStore() { return reconnectPasswordStore(); }
    /// Closes both objects and opens the connection again. While a transaction is under way the connection stays.
    Task<DatabaseError> reconnectPasswordStore();
    /// A failed step is passed over; afterwards the record set's state tells, and the value why it is not open.
    /// The query is run only after `useGivenQuery`, else `ListingQuery` is.
    Task<DatabaseError> openRecordset(OpenMode mode, std::string query);
    void useGivenQuery() { UseGivenQuery_ = true; }

    Task<DatabaseError> beginTransaction();
    Task<DatabaseError> commitTransaction();
    void rollbackTransaction();

    [[nodiscard]] std::shared_ptr<Recordset> recordset() const { return StoreRecordset_; }
    [[nodiscard]] bool isRecordsetOpen() const { return StoreRecordset_ && StoreRecordset_->state() == adStateOpen; }
    [[nodiscard]] const std::string& ListingQuery() const { return ListingQuery_; }
    [[nodiscard]] const StoreParameters& parameters() const { return parameters_; }

    void closeRecordset();
    /// Closes both and releases them. An operation under way then ends with an error.
    void close();

private:
    Task<DatabaseError> openConnection(std::string databaseType, std::string dataSource, std::string userName,
                                       std::string userPassword);
    Task<DatabaseError> openAs(OpenMode mode, std::string query);

    Database& database_;
    StoreParameters parameters_;
    std::string ListingQuery_;
    bool UseGivenQuery_ = false;
    bool isInTransaction_ = false;
    std::shared_ptr<Connection> StoreConnection_;
    std::shared_ptr<Recordset> StoreRecordset_;
};

/// Rolls back unless it was committed, also when the task is destroyed.
class StoreTransaction {
public:
    explicit StoreTransaction(StoreObjects& objects) : objects_(objects) {}
    StoreTransaction(const StoreTransaction&) = delete;
    StoreTransaction& operator=(const StoreTransaction&) = delete;
    ~StoreTransaction() { objects_.rollbackTransaction(); }

    Task<DatabaseError> begin() { return objects_.beginTransaction(); }
    Task<DatabaseError> commit() { return objects_.commitTransaction(); }

private:
    StoreObjects& objects_;
};

}  // namespace vantrell
