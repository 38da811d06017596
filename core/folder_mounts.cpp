// SPDX-License-Identifier: MIT
#include "core/folder_mounts.h"

#include <array>
#include <utility>

namespace vantrell {

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20U;
constexpr std::size_t kFields = 3;
constexpr char kAfterField = '\0';  // no path can hold it

}  // namespace

// For each folder its path, the path of the mount point and the type.
FolderMounts::Known& FolderMounts::known() {
    if (known_) return *known_;
    known_.emplace();
    const Result<std::string> text = files_.read(file_, kMostBytes);
    if (text.ok()) stored_ = text.value();
    std::array<std::string, kFields> fields;
    std::size_t count = 0;
    for (std::size_t begin = 0, end = 0; (end = stored_.find(kAfterField, begin)) != std::string::npos;
         begin = end + 1) {
        fields.at(count++ % kFields) = stored_.substr(begin, end - begin);
        if (count % kFields == 0) (*known_)[fields[0]] = {fields[1], fields[2]};
    }
    return *known_;
}

bool FolderMounts::isAnother(const Path& folder, const std::optional<MountPoint>& now) {
    const auto found = known().find(folder);
    if (found == known().end()) return false;
    const MountPoint& before = found->second;
    return !now || now->path != before.path || now->type != before.type;
}

void FolderMounts::chosen(const Folder& folder) {
    known().erase(folder.path);
    if (folder.mount) known()[folder.path] = *folder.mount;
    save();
}

void FolderMounts::used(const std::vector<Folder>& folders) {
    Known next;
    for (const Folder& folder : folders) {
        const auto before = known().find(folder.path);
        if (before != known().end())
            next.insert(*before);
        else if (folder.mount)
            next.emplace(folder.path, *folder.mount);
    }
    known_ = std::move(next);
    save();
}

// Where it cannot be written, it holds for this run, and the next pass tries again.
void FolderMounts::save() {
    std::string text;
    for (const auto& [folder, mount] : known())
        text += folder + kAfterField + mount.path + kAfterField + mount.type + kAfterField;
    if (text != stored_ && files_.writeAtomically(file_, text).ok()) stored_ = std::move(text);
}

}  // namespace vantrell
