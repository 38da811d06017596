// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/data_files.h"
#include "platform/database_copy.h"
#include "platform/file_toolbox.h"

namespace vantrell {

enum class CopyResult {
    copied,
    locked,  ///< another one holds a file locked: nothing changed, and it can be tried again
    failed,  ///< nothing changed
};

/// Says whether a copy leaves a target alone that equals the source already.
enum class Unchanged { written, leftAlone };

/// Copies of the two files that hold the configuration, each whole or not made. A source that is not what it should be
/// (settings of which not all items can be read, a password file without its table) is refused before anything is
/// replaced. Copies are private (POSIX: 0600). Every call is one try that waits for nobody's lock.
class FileCopies {
public:
    FileCopies(const FileToolbox& toolbox, DataFiles& files, DatabaseCopier& databases, const Clock& clock)
        : toolbox_(toolbox), files_(files), databases_(databases), clock_(clock) {}

    /// For backing up and for restoring.
    [[nodiscard]] CopyResult copySettings(const Path& source, const Path& target, Unchanged unchanged);
    /// Copies the live password file as it is at one moment, even while another program writes to it.
    [[nodiscard]] CopyResult backUpPasswords(const Path& live, const Path& backup, Unchanged unchanged);
    /// Gives the live password file the contents of the backup, for others who have it open too. It is always written.
    /// A live file that is no database is kept under a dated name, with what belongs to it. One that holds anything
    /// else than the backup does is copied to a dated name first, and `kept` is that name: whatever the passwords were,
    /// some file may have been encrypted with them. When that copy cannot be made, the live file stays as it is.
    [[nodiscard]] CopyResult restorePasswords(const Path& backup, const Path& live, Path& kept);

private:
    [[nodiscard]] DatabaseCopier::Contents readPasswords(const Path& file);
    [[nodiscard]] CopyResult write(const Path& target, const std::string& bytes, Unchanged unchanged);
    [[nodiscard]] CopyResult settleCompanions(const Path& backup);
    [[nodiscard]] bool keepCopyOf(const std::string& passwords, const Path& live, Path& kept);
    [[nodiscard]] CopyResult putInPlaceOf(const Path& live, const std::string& bytes);
    [[nodiscard]] std::vector<Path> companionsOf(const Path& file) const;
    [[nodiscard]] bool stands(const Path& path) const { return toolbox_.kindOf(path) != EntryKind::missing; }
    [[nodiscard]] Path datedName(const Path& file) const;

    const FileToolbox& toolbox_;
    DataFiles& files_;
    DatabaseCopier& databases_;
    const Clock& clock_;
};

}  // namespace vantrell
