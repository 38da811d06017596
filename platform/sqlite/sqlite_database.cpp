// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_database.h"

#include "platform/sqlite/sqlite_connection.h"
#include "platform/sqlite/sqlite_recordset.h"

namespace vantrell {

std::shared_ptr<Connection> SqliteDatabase::makeConnection() { return std::make_shared<SqliteConnection>(loop_); }

std::shared_ptr<Recordset> SqliteDatabase::makeRecordset() { return std::make_shared<SqliteRecordset>(); }

}  // namespace vantrell
