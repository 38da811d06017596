// SPDX-License-Identifier: MIT
#include "core/settings_file.h"

#include "base/date_text.h"
#include "core/settings_format.h"

namespace vantrell {

namespace {

// Fifteen items never need this much, and it is small enough to be read at once.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

}  // namespace

SettingsFile::SettingsFile(ProgramState& state, DataFiles& files, const Clock& clock)
    : state_(state), files_(files), clock_(clock) {}

SettingsFile::Loaded SettingsFile::loadSettings() {
    const Result<std::string> file = files_.read(state_.SettingsFilePath, kMostBytes);
    if (file.failedWith(FaultKind::notThere))
        loaded_ = Loaded::missing;
    else if (!file.ok())
        loaded_ = Loaded::unreadable;
    else
        loaded_ = parseSettings(file.value(), state_.settings) == kSettingsItems ? Loaded::whole : Loaded::incomplete;
    foundIncomplete_ = foundIncomplete_ || loaded_ == Loaded::incomplete;
    return loaded_;
}

void SettingsFile::saveSettings() {
    if (loaded_ == Loaded::unreadable) return;
    if (loaded_ == Loaded::incomplete && !keepIncompleteFile()) return;
    const std::string line = formatSettings(state_.settings);
    // Every pass saves the settings. When the file holds the same already, writing and flushing it again would only
    // wear out the disk.
    const Result<std::string> present = files_.read(state_.SettingsFilePath, line.size() + 1);
    if (present.ok() && present.value() == line) return;
    (void)files_.writeAtomically(state_.SettingsFilePath, line);
}

bool SettingsFile::keepIncompleteFile() {
    const Path dated = state_.SettingsFilePath + "." + secondStamp(clock_.now());
    if (!files_.setAside(state_.SettingsFilePath, dated).ok()) return false;
    loaded_ = Loaded::whole;
    return true;
}

}  // namespace vantrell
