// SPDX-License-Identifier: MIT
#include "platform/sqlite/sqlite_database.h"

#include <sqlite3.h>

#include "platform/library_versions.h"
#include "platform/sqlite/sqlite_connection.h"
#include "platform/sqlite/sqlite_recordset.h"

namespace vantrell {

std::shared_ptr<Connection> SqliteDatabase::makeConnection() { return std::make_shared<SqliteConnection>(loop_); }

std::shared_ptr<Recordset> SqliteDatabase::makeRecordset() { return std::make_shared<SqliteRecordset>(); }

LibraryVersion databaseLibraryVersion() { return {"SQLite", ::sqlite3_libversion()}; }

}  // namespace vantrell
