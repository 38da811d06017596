// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

#include "base/path.h"
#include "core/program_state.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// The title of the chooser when its caller gave none.
inline constexpr char kDefaultPickTitle[] = "Select a Folder";
/// The title of the chooser's own message boxes.
inline constexpr char kPickerTitle[] = "Tessaly Folder Browser";

/// The folder on which the chooser opens: the wanted one, or where that has gone the nearest one above it that still
/// exists; `home` when nothing is wanted or nothing is left.
[[nodiscard]] Path startFolder(const Path& wanted, const Path& home, const FileToolbox& toolbox);

struct NewFolder {
    Path path;            ///< empty when no folder was created
    std::string refusal;  ///< then: words for people (UTF-8, CR LF between lines)
};
/// Creates one folder inside another, with the name as it is. Whatever already bears the name, a folder or not, is left
/// as it is.
[[nodiscard]] NewFolder createFolder(const Path& inside, const std::string& name, FileToolbox& toolbox);

/// Warnings (UTF-8, one blank between two sentences) about consequences of the four folders and the options that the
/// operator may not expect; empty when there is nothing to warn of. The folders are compared as texts.
[[nodiscard]] std::string folderWarning(const SettingsRecord& settings);

}  // namespace vantrell
