// SPDX-License-Identifier: MIT
#include "core/settings_keeper.h"

#include <utility>

#include "base/display_text.h"
#include "core/scan_interval.h"

namespace vantrell {

std::vector<NamedFolder> foldersOf(const SettingsRecord& settings) {
    return {{FolderKind::source, settings.SourceFolder},
            {FolderKind::destination, settings.DestinationFolder},
            {FolderKind::done, settings.DoneFolder},
            {FolderKind::reject, settings.RejectFolder}};
}

bool SettingsKeeper::save() {
    const Result<Saved> saved = file_.saveSettings();
    if (saved.ok()) {
        // That the file says the same already does not mean that it could be written.
        if (saved.value() == Saved::written) isTold_ = false;
        return true;
    }
    const std::string words = "The settings could not be saved: " + displayText(saved.fault().text);
    if (state_.settings != file_.stored()) takeBack(words);
    if (!std::exchange(isTold_, true))
        boxes_.inform({kApplicationTitle, words + "\r\nAll settings are as they were saved last."});
    return false;
}

// The controls may not take what they are shown for a change by the operator.
void SettingsKeeper::takeBack(const std::string& words) {
    const bool wasLoading = std::exchange(state_.UiLoading, true);
    state_.settings = file_.stored();
    for (const auto& [kind, folder] : foldersOf(state_.settings)) window_.setFolder(kind, folder);
    window_.setMinutes(minutesText(state_.settings.ScanIntervalMs));
    window_.showSettings(state_.settings);
    window_.setPanel1(words);
    state_.UiLoading = wasLoading;
}

}  // namespace vantrell
