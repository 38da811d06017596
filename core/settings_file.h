// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"
#include "base/result.h"
#include "core/program_state.h"
#include "platform/clock.h"
#include "platform/data_files.h"

namespace vantrell {

/// `notNeeded`: the file says the same already, or is left alone.
enum class Saved { written, notNeeded };

/// The settings of the program state, and the file ZEP.cfg.
class SettingsFile {
public:
    SettingsFile(Path file, ProgramState& state, DataFiles& files, const Clock& clock);

    enum class Loaded {
        whole,       ///< all items came
        missing,     ///< there is no such file
        incomplete,  ///< fewer items came than there are; the file is kept under a dated name before the first save
        unreadable,  ///< it exists and could not be read; it is left as it is, nothing will be saved
    };

    /// Reads the items in order. Fields that could not be read keep the values they had.
    Loaded loadSettings();
    /// Writes all fields; after a fault the file is as it was. A file that could not be read is left alone, which is no
    /// fault: what is set holds until the program ends.
    Result<Saved> saveSettings();
    /// What is known to be in the file: what was read, or saved, last.
    [[nodiscard]] const SettingsRecord& stored() const { return stored_; }
    /// True when a load since the start of the program, or since the last restore, found an incomplete file. What has
    /// been saved since then is only a part of the settings that there once were.
    [[nodiscard]] bool wasFoundIncomplete() const { return foundIncomplete_; }
    /// A whole file has been put in the place of whatever was there.
    void wasRestored() { foundIncomplete_ = false; }

private:
    [[nodiscard]] Result<Saved> write();
    [[nodiscard]] Result<> keepIncompleteFile();

    const Path path_;
    ProgramState& state_;
    DataFiles& files_;
    const Clock& clock_;
    SettingsRecord stored_;
    Loaded loaded_ = Loaded::missing;
    bool foundIncomplete_ = false;
};

}  // namespace vantrell
