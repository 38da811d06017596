// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/database_value.h"
#include "task/task.h"

/// A database reached as ADO (ActiveX Data Objects 2.x) reaches one. Members and constants have ADO's names and
/// numbers, as published in its reference; only what the program uses is here.

namespace vantrell {

enum ConnectModeEnum : int { adModeReadWrite = 3 };
enum CursorLocationEnum : int { adUseServer = 2, adUseClient = 3 };
enum CursorTypeEnum : int { adOpenForwardOnly = 0, adOpenKeyset = 1 };
enum LockTypeEnum : int { adLockReadOnly = 1, adLockOptimistic = 3 };
enum ObjectStateEnum : int { adStateClosed = 0, adStateOpen = 1 };
enum AffectEnum : int { adAffectCurrent = 1 };
/// Value of the `options` parameters.
inline constexpr int adOptionUnspecified = -1;

/// The numbers of `DatabaseError`: ADO's own (ErrorValueEnum) and those that OLE DB providers answer (HRESULT).
enum DatabaseErrorNumber : std::int32_t {
    adErrNoCurrentRecord = 3021,
    adErrItemNotFound = 3265,
    adErrFeatureNotAvailable = 3251,
    adErrObjectClosed = 3704,
    adErrObjectOpen = 3705,
    adErrProviderNotFound = 3706,
    adErrInvalidConnection = 3709,
    kUnspecifiedError = -2147467259,    // E_FAIL, 0x80004005: what has no number of its own
    kPermissionDenied = -2147217911,    // DB_SEC_E_PERMISSIONDENIED, 0x80040E09
    kErrorsInCommand = -2147217900,     // DB_E_ERRORSINCOMMAND, 0x80040E14
    kErrorsOccurred = -2147217887,      // DB_E_ERRORSOCCURRED, 0x80040E21: a value could not be stored as it is
    kIntegrityViolation = -2147217873,  // DB_E_INTEGRITYVIOLATION, 0x80040E2F
    kTimeoutExpired = -2147217871,      // DB_E_ABORTLIMITREACHED, 0x80040E31: locked by another for too long
    kTableDoesNotExist = -2147217865,   // DB_E_NOTABLE, 0x80040E37
    kRowCannotBeLocated = -2147217864,  // DB_E_CONCURRENCYVIOLATION, 0x80040E38
};

/// Outcome of a database operation: nothing on success, else a number and words for people (UTF-8, but for the bytes
/// of a path).
struct [[nodiscard]] DatabaseError {
    std::int32_t number = 0;
    std::string description;

    explicit operator bool() const { return number != 0; }
};

struct FieldResult {
    DatabaseValue value;
    DatabaseError error;
};

class Connection;

/// The records that a query gives, all read when it is opened, in the order in which the database gives them, and a
/// place among them. Open records become unreadable when their connection is closed, unless they were detached before.
///
/// Whoever awaits an operation keeps the record set alive meanwhile (a shared pointer in the awaiting task).
class Recordset {
public:
    Recordset() = default;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    virtual ~Recordset() = default;

    /// Null detaches open records: they stay readable without the connection, but cannot be updated.
    virtual void setActiveConnection(std::shared_ptr<Connection> connection) = 0;
    virtual void setSource(std::string query) = 0;
    virtual void setCursorType(CursorTypeEnum type) = 0;
    /// Only with adLockOptimistic, and with a query that lists one whole table ("SELECT * from NAME"), can records be
    /// changed. It is adLockReadOnly at first.
    virtual void setLockType(LockTypeEnum type) = 0;
    virtual void setCursorLocation(CursorLocationEnum location) = 0;

    /// Runs the source and stands on the first record. A file locked by another is tried again for the connection's
    /// CommandTimeout.
    virtual Task<DatabaseError> open() = 0;
    /// Runs it again.
    virtual Task<DatabaseError> requery(int options) = 0;
    [[nodiscard]] virtual ObjectStateEnum state() const = 0;
    virtual void close() = 0;

    /// -1 while it is not open.
    [[nodiscard]] virtual std::int64_t recordCount() const = 0;
    /// Also True while it is not open.
    [[nodiscard]] virtual bool eof() const = 0;
    virtual void moveFirst() = 0;
    virtual void moveNext() = 0;

    /// Fields("name").Value of the current record; the letter case of names does not count. Errors: adErrItemNotFound,
    /// adErrNoCurrentRecord, adErrObjectClosed.
    [[nodiscard]] virtual FieldResult value(std::string_view field) const = 0;
    /// Written by the next `update`.
    virtual DatabaseError setValue(std::string_view field, DatabaseValue value) = 0;
    /// Begins a new record, written by the next `update`.
    virtual DatabaseError addNew() = 0;
    /// Writes what was set. It fails, and nothing is changed, when the database would keep a value other than the given
    /// one (a text with leading zeros in a column of numbers).
    virtual Task<DatabaseError> update() = 0;
    /// ADO's Delete. The record is gone at once; `moveNext` goes to the one behind it.
    virtual Task<DatabaseError> deleteRecord(AffectEnum affected) = 0;
};

struct ExecuteResult {
    std::shared_ptr<Recordset> recordset;  ///< open and read-only; null on failure
    std::int64_t recordsAffected = 0;
    DatabaseError error;
};

/// One connection to a database file. It never creates, repairs or converts a file.
///
/// Whoever awaits an operation keeps the connection alive meanwhile (a shared pointer in the awaiting task). A
/// connection that is closed under an operation makes it end with adErrObjectClosed.
class Connection {
public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    virtual ~Connection() = default;

    virtual void setMode(ConnectModeEnum mode) = 0;
    virtual void setConnectionTimeout(int seconds) = 0;
    /// How long an opening or a statement tries again while another program holds the file locked. At first 30 s.
    virtual void setCommandTimeout(int seconds) = 0;
    virtual void setCursorLocation(CursorLocationEnum location) = 0;

    virtual Task<DatabaseError> open(std::string connectionString, std::string userId, std::string password,
                                     int options) = 0;
    virtual Task<ExecuteResult> execute(std::string commandText, int options) = 0;
    [[nodiscard]] virtual ObjectStateEnum state() const = 0;
    /// A transaction that was not committed is rolled back.
    virtual void close() = 0;

    /// From here on no other program can write, and nobody sees what is written here before `commitTrans`.
    virtual Task<DatabaseError> beginTrans() = 0;
    /// On success everything since `beginTrans` is on stable storage. After a failure `rollbackTrans` is due.
    virtual Task<DatabaseError> commitTrans() = 0;
    /// Does nothing when no transaction is open.
    virtual void rollbackTrans() = 0;
};

/// Makes the objects.
class Database {
public:
    Database() = default;
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;
    virtual ~Database() = default;

    [[nodiscard]] virtual std::shared_ptr<Connection> makeConnection() = 0;
    [[nodiscard]] virtual std::shared_ptr<Recordset> makeRecordset() = 0;
};

}  // namespace vantrell
