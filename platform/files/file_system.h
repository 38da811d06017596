// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "base/path.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

/// A place in the tree of folders where a file system is mounted, as /proc/self/mountinfo lists it (proc(5)).
struct Mount {
    std::uint64_t id = 0;
    dev_t device = 0;
    Path point;
    std::string type;     ///< "ext4", "nfs4", "fuse.sshfs" …
    std::string source;   ///< "/dev/sda1", "server:/share" …
    std::string options;  ///< those of the file system, separated by commas
};

/// The mount on which an open file or folder lies; nothing when it cannot be told.
[[nodiscard]] std::optional<Mount> mountOf(const UniqueFd& file);

/// What can be relied on where a file lies. What is not known is taken for the worse.
struct FileSystemFacts {
    /// Whoever writes to a file here does so on this machine, so that a read lease that is granted means that nobody
    /// does.
    bool isLocal = false;
    /// Another machine may write to the files, and keep back for half a minute what it has written.
    bool isNetwork = false;
    /// Of a rename, the new name is never on the disk later than the old one is gone, and changes of names reach the
    /// disk in their order.
    bool ordersRenames = false;
    /// A file keeps its inode number, and names that differ in letter case are different names.
    bool hasFixedIdentities = false;
    /// Two changes that lie closer together may bear the same time.
    std::chrono::nanoseconds timeStep = std::chrono::seconds(2);
};

/// Finds the facts, once for each file system. The references hold until the next `beginPass` or `endPass`.
class FileSystems {
public:
    [[nodiscard]] const FileSystemFacts& of(const UniqueFd& file);
    /// The same when the device is known already (`st_dev`).
    [[nodiscard]] const FileSystemFacts& of(const UniqueFd& file, dev_t device);

    /// Device numbers are used again after a mount has gone; what is known then counts no more. In a pass the file
    /// systems of its folders are kept from going, by a descriptor for each, so that nothing needs to be asked again.
    void beginPass() { startAnew(true); }
    void endPass() { startAnew(false); }

private:
    struct Kept {
        UniqueFd folder;
        FileSystemFacts facts;
    };
    void startAnew(bool isPass);

    bool isPass_ = false;
    std::map<dev_t, Kept> kept_;
    std::map<std::pair<dev_t, long>, FileSystemFacts> known_;  // by device and kind (statfs)
};

}  // namespace vantrell
