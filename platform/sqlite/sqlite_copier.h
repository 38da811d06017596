// SPDX-License-Identifier: MIT
#pragma once

#include "platform/database_copy.h"

namespace vantrell {

/// SQLite files (https://www.sqlite.org/backup.html, https://www.sqlite.org/c3ref/serialize.html). Reached through
/// SQLite alone: closing a descriptor of ours on such a file would drop the locks of this process's connections.
class SqliteCopier final : public DatabaseCopier {
public:
    [[nodiscard]] Contents read(const Path& file) override;
    [[nodiscard]] DatabaseFault replace(const Path& file, const std::string& contents, const Keep& keep) override;
    [[nodiscard]] bool holdsTable(const std::string& contents, std::string_view table,
                                  const std::vector<std::string>& columns) const override;
    [[nodiscard]] std::vector<std::string> companionEndings() const override { return {"-journal", "-wal", "-shm"}; }
};

}  // namespace vantrell
