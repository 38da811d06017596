// SPDX-License-Identifier: MIT
#pragma once

#include "core/main_window.h"
#include "core/settings_file.h"
#include "platform/message_boxes.h"

namespace vantrell {

/// Saves the settings for everybody who changes them or ends a piece of work, and knows in one place what follows when
/// that fails: what was changed is taken back, so that marks and fields show what is stored, and the operator is told.
class SettingsKeeper {
public:
    /// Everything outlives it.
    SettingsKeeper(ProgramState& state, SettingsFile& file, MainWindow& window, MessageBoxes& boxes)
        : state_(state), file_(file), window_(window), boxes_(boxes) {}

    /// False when the settings could not be saved. Then they are again what the file holds, and the window shows them.
    /// A box tells of it, once until a save has worked again.
    bool save();

private:
    void takeBack(const std::string& words);

    ProgramState& state_;
    SettingsFile& file_;
    MainWindow& window_;
    MessageBoxes& boxes_;
    bool isTold_ = false;
};

/// The four folders, each with what it is.
struct NamedFolder {
    FolderKind kind;
    const Path& folder;
};
[[nodiscard]] std::vector<NamedFolder> foldersOf(const SettingsRecord& settings);

}  // namespace vantrell
