// SPDX-License-Identifier: MIT
#include "platform/linux/sqlite_database.h"

#include "platform/linux/sqlite_connection.h"
#include "platform/linux/sqlite_recordset.h"

namespace vantrell {

std::shared_ptr<Connection> SqliteDatabase::makeConnection() { return std::make_shared<SqliteConnection>(loop_); }

std::shared_ptr<Recordset> SqliteDatabase::makeRecordset() { return std::make_shared<SqliteRecordset>(); }

}  // namespace vantrell
