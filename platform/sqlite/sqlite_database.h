// SPDX-License-Identifier: MIT
#pragma once

#include "platform/database.h"
#include "platform/event_loop.h"

namespace vantrell {

/// Databases in SQLite files (3.35 or later). The connection string of the Jet provider names the file:
/// "Provider=Microsoft.Jet.OLEDB.4.0;data source=" and the path. An existing file is opened for reading and writing, or
/// for reading alone when it may not be written; it is never created.
class SqliteDatabase final : public Database {
public:
    explicit SqliteDatabase(EventLoop& loop) : loop_(loop) {}

    [[nodiscard]] std::shared_ptr<Connection> makeConnection() override;
    [[nodiscard]] std::shared_ptr<Recordset> makeRecordset() override;

private:
    EventLoop& loop_;
};

}  // namespace vantrell
