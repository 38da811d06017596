// SPDX-License-Identifier: MIT
#include "platform/files/mount_lookup.h"

#include <sys/sysmacros.h>

#include <utility>

#include "platform/files/file_system.h"
#include "platform/files/place.h"

namespace vantrell {

namespace {

// A folder that may not be read lies somewhere all the same. This way of opening mounts nothing.
UniqueFd openToAsk(Kernel& kernel, const Path& path) {
    UniqueFd folder = openFolder(kernel, path);
    return folder.error() == EACCES ? openPath(kernel, path, O_PATH | O_DIRECTORY | O_CLOEXEC) : std::move(folder);
}

// The folder, or the nearest one above it that is there: a folder goes together with the mount on which it lay.
UniqueFd openNearest(Kernel& kernel, Path path) {
    UniqueFd folder = openToAsk(kernel, path);
    while (folder.error() == ENOENT || folder.error() == ENOTDIR) {
        Path above = folderOf(path);
        if (above == std::exchange(path, above)) break;
        folder = openToAsk(kernel, path);
    }
    return folder;
}

}  // namespace

std::optional<MountLookup::Seen> MountLookup::seenAt(const Path& folder) const {
    struct statx status {};
    const int error =
        kernel_.statx(AT_FDCWD, folder.c_str(), AT_NO_AUTOMOUNT | AT_STATX_DONT_SYNC, STATX_INO | STATX_MNT_ID, status);
    if (error != 0 || (status.stx_mask & STATX_MNT_ID) == 0) return std::nullopt;
    return Seen{{makedev(status.stx_dev_major, status.stx_dev_minor), status.stx_ino}, status.stx_mnt_id};
}

std::optional<MountPoint> MountLookup::under(const Path& folder) {
    const auto known = known_.find(folder);
    if (known != known_.end() && seenAt(folder) == known->second.first) return known->second.second;
    const UniqueFd opened = openNearest(kernel_, folder);
    const std::optional<Mount> mount = opened ? mountOf(opened) : std::nullopt;
    if (!mount) return std::nullopt;
    MountPoint point{mount->point, mount->type, mount->id};
    // Looked at after the opening, which may have mounted it.
    const std::optional<Seen> seen = seenAt(folder);
    if (seen && seen->mount == point.id) known_[folder] = {*seen, point};
    return point;
}

}  // namespace vantrell
