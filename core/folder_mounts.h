// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/data_files.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// Remembers, in a small file of the data folder, under which mount each folder lay when it was chosen, or when a pass
/// used it first. While a share or a stick is not mounted, an empty folder may bear its path, and whatever is put there
/// is hidden from everybody once it comes. Where the file cannot be read, nothing is known.
class FolderMounts {
public:
    /// `files` outlives it.
    FolderMounts(DataFiles& files, Path file) : files_(files), file_(std::move(file)) {}

    /// Whether the folder is known to have lain under another mount point than `now`, or one of another type.
    [[nodiscard]] bool isAnother(const Path& folder, const std::optional<MountPoint>& now);

    struct Folder {
        Path path;
        std::optional<MountPoint> mount;
        bool operator==(const Folder&) const = default;
    };
    /// The operator has chosen the folder as it is now: what was known of it is forgotten.
    void chosen(const Folder& folder);
    /// A pass uses these folders. What is known of them stays; what was known of all others is forgotten.
    void used(const std::vector<Folder>& folders);

private:
    using Known = std::map<Path, MountPoint>;
    [[nodiscard]] Known& known();
    void save();

    DataFiles& files_;
    const Path file_;
    std::optional<Known> known_;  ///< not before the file has been read
    std::string stored_;          ///< what it holds
};

inline constexpr char kFolderMountsName[] = "Folder Mounts.list";

}  // namespace vantrell
