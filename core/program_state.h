// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "base/path.h"

namespace vantrell {

/// Everything that is configured; ZEP.cfg holds these fields in this order.
struct SettingsRecord {
    Path SourceFolder;
    bool IncludeSubfolders = false;
    Path DestinationFolder;
    Path DoneFolder;
    bool RunNormalAtStartup = false;
    std::int32_t ScanIntervalMs = 0;
    std::int16_t WeeklyDeleteDay = 0;  ///< 0 none, 1 Monday to 7 Sunday
    std::int16_t WeeklyDeleteHour = 0;
    std::int16_t WeeklyDeleteMinute = 0;
    std::string WeeklyDeleteAmPm;
    std::int16_t WeeklyDeleteDaysOld = 0;
    bool RunContinuallyAtStartup = false;
    Path RejectFolder;
    bool OverwriteExistingFiles = false;
    bool LoggingTurnedOff = false;

    bool operator==(const SettingsRecord&) const = default;
};

/// The state of the running program that more than one room reads: one object, made by the engine and passed to whoever
/// needs it.
struct ProgramState {
    SettingsRecord settings;

    Path AppFolder;

    bool UiLoading = false;      ///< the program itself changes controls; handlers do not save
    bool WindowLoading = false;  ///< folder buttons do nothing yet
    bool ClosingForGood = false;
    bool StartupPassMarker = false;  ///< the next pass is the one that start-up runs
    bool PassInProgress = false;

    [[nodiscard]] bool anyFolderIsEmpty() const {
        return settings.SourceFolder.empty() || settings.DestinationFolder.empty() || settings.DoneFolder.empty() ||
               settings.RejectFolder.empty();
    }
};

/// What the main window says when a folder is missing in the settings (see anyFolderIsEmpty).
inline constexpr char kFolderIsEmpty[] = "One or all of the folder parameters are missing. Please check below.";

/// Names of the version information; they also name the levels of the data folder.
inline constexpr char kCompanyName[] = "Quillon, Inc";
inline constexpr char kProductName[] = "Vantrell";

}  // namespace vantrell
