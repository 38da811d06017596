// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>

#include "platform/file_toolbox.h"
#include "platform/files/file_stamp.h"
#include "platform/files/kernel.h"

namespace vantrell {

/// Finds the mount under which a folder lies. Cheap while nothing has changed, so that it can be asked for every file.
class MountLookup {
public:
    explicit MountLookup(Kernel& kernel) : kernel_(kernel) {}

    /// As FileToolbox::mountUnder.
    [[nodiscard]] std::optional<MountPoint> under(const Path& folder);

private:
    /// What stood under a path, and on which mount.
    struct Seen {
        FileIdentity folder;
        std::uint64_t mount = 0;
        bool operator==(const Seen&) const = default;
    };
    [[nodiscard]] std::optional<Seen> seenAt(const Path& folder) const;

    Kernel& kernel_;
    std::map<Path, std::pair<Seen, MountPoint>> known_;
};

}  // namespace vantrell
