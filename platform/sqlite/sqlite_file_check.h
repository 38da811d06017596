// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include "base/path.h"
#include "platform/database.h"

namespace vantrell {

/// What keeps the path from being opened as a database: nothing there, a folder, a link, a device.
DatabaseError checkFileBeforeOpening(const Path& file);

/// Why `sqlite3_open_v2` failed.
DatabaseError openingError(sqlite3* handle, const Path& file);

/// Tells by its first bytes that an open file is no SQLite database: empty, an Access database, anything else.
///
/// The bytes are read through SQLite's own descriptor. Closing one of ours on the same file would drop the locks that
/// SQLite holds on it in this process (https://www.sqlite.org/howtocorrupt.html, section 2.2).
DatabaseError checkFormat(sqlite3* handle, const Path& file);

}  // namespace vantrell
