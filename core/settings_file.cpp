// SPDX-License-Identifier: MIT
#include "core/settings_file.h"

#include <utility>

#include "base/date_text.h"
#include "core/settings_format.h"

namespace vantrell {

namespace {

// Fifteen items never need this much, and it is small enough to be read at once.
constexpr std::size_t kMostBytes = std::size_t{1} << 20;

}  // namespace

SettingsFile::SettingsFile(Path file, ProgramState& state, DataFiles& files, const Clock& clock)
    : path_(std::move(file)), state_(state), files_(files), clock_(clock) {}

SettingsFile::Loaded SettingsFile::loadSettings() {
    const Result<std::string> file = files_.read(path_, kMostBytes);
    if (file.failedWith(FaultKind::notThere))
        loaded_ = Loaded::missing;
    else if (!file.ok())
        loaded_ = Loaded::unreadable;
    else
        loaded_ = parseSettings(file.value(), state_.settings) == kSettingsItems ? Loaded::whole : Loaded::incomplete;
    stored_ = state_.settings;
    foundIncomplete_ = foundIncomplete_ || loaded_ == Loaded::incomplete;
    return loaded_;
}

Result<Saved> SettingsFile::saveSettings() {
    Result<Saved> saved = write();
    if (saved.ok()) stored_ = state_.settings;
    return saved;
}

Result<Saved> SettingsFile::write() {
    if (loaded_ == Loaded::unreadable) return Saved::notNeeded;
    if (loaded_ == Loaded::incomplete) {
        const Result<> kept = keepIncompleteFile();
        if (!kept.ok()) return kept.fault();
    }
    const std::string line = formatSettings(state_.settings);
    // Every pass saves the settings. When the file holds the same already, writing it again would only wear out the
    // disk.
    const Result<std::string> present = files_.read(path_, line.size() + 1);
    if (present.ok() && present.value() == line) return Saved::notNeeded;
    const Result<> written = files_.writeAtomically(path_, line);
    if (!written.ok()) return written.fault();
    return Saved::written;
}

// The file keeps its own name until the new one is put in its place. A crash between the two steps leaves what was
// there, and the next start does both again.
Result<> SettingsFile::keepIncompleteFile() {
    const Path dated = path_ + "." + secondStamp(clock_.now());
    Result<> kept = files_.keepCopy(path_, dated);
    if (kept.ok()) loaded_ = Loaded::whole;
    return kept;
}

}  // namespace vantrell
