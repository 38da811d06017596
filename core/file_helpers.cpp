// SPDX-License-Identifier: MIT
#include "core/file_helpers.h"

namespace vantrell {

std::string FileNameOf(std::string_view path) { return nameOf(path); }

std::string ExtensionOf(std::string_view path) {
    for (std::size_t length = 2; length <= 5 && length <= path.size(); ++length) {
        const std::string_view end = path.substr(path.size() - length);
        if (end.front() == '.') return std::string(end.substr(1));
    }
    return "Unknown";
}

bool FileExists(const FileToolbox& toolbox, const Path& path) {
    return !path.empty() && toolbox.kindOf(path) == EntryKind::regularFile;
}

bool FolderExists(const FileToolbox& toolbox, const Path& path) {
    return !path.empty() && (toolbox.isFolder(path) || toolbox.kindOf(path) == EntryKind::regularFile);
}

bool ClearFileAttributes(FileToolbox& toolbox, const Path& path) {
    if (!FileExists(toolbox, path)) return false;
    toolbox.clearReadOnly(path);
    return true;
}

}  // namespace vantrell
