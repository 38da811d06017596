// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/path.h"

namespace vantrell {

/// Why a database file could not be taken or replaced.
enum class DatabaseFault {
    none,
    inUse,         ///< another one holds it locked: it can be tried again
    notADatabase,  ///< what stands there is damaged, or no database at all
    failed,        ///< missing, not allowed, no regular file, a failing or full disk
};

/// Takes and replaces the contents of small database files as a whole. Every call is one try, waits for nobody's lock
/// and runs to its end before it returns.
class DatabaseCopier {
public:
    DatabaseCopier() = default;
    DatabaseCopier(const DatabaseCopier&) = delete;
    DatabaseCopier& operator=(const DatabaseCopier&) = delete;
    virtual ~DatabaseCopier() = default;

    struct Contents {
        std::string bytes;  ///< a whole database file that needs no journal beside it
        DatabaseFault fault = DatabaseFault::none;
    };
    /// The contents as of one moment. What others have not committed is not among them; what a crash left half done is
    /// undone first, in the file itself.
    [[nodiscard]] virtual Contents read(const Path& file) = 0;

    /// Told what a file holds that is about to be replaced, when nobody else can write to it any more. When it answers
    /// False the file stays as it is, which is the fault `failed`.
    using Keep = std::function<bool(const std::string& contents)>;
    /// Gives an existing file these contents in one transaction, after undoing what a crash left half done. All or
    /// nothing, also after a crash and for others who have the file open. On success it is on stable storage. `keep` is
    /// called at most once, and only when the file holds something else than the new contents.
    [[nodiscard]] virtual DatabaseFault replace(const Path& file, const std::string& contents, const Keep& keep) = 0;

    /// Whether these are an undamaged database that has the table with all these columns.
    [[nodiscard]] virtual bool holdsTable(const std::string& contents, std::string_view table,
                                          const std::vector<std::string>& columns) const = 0;

    /// What is appended to a database file's name for the files that may stand beside it and belong to it.
    [[nodiscard]] virtual std::vector<std::string> companionEndings() const = 0;
};

}  // namespace vantrell
