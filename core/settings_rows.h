// SPDX-License-Identifier: MIT
#pragma once

#include <tuple>

#include "core/program_state.h"

namespace vantrell {

/// How a setting may be shown to strangers.
enum class Disclosure {
    value,   ///< as it is: a number or a yes or no
    folder,  ///< as a word that stands for the folder
    half,    ///< as it is when it is AM or PM
};

/// One setting: its field, its name in a report, and how the report shows it.
template <class T>
struct SettingRow {
    T SettingsRecord::*field;
    const char* name;
    Disclosure disclosure = Disclosure::value;
    const char* standIn = "";  ///< the word for a folder
};
template <class T>
SettingRow(T SettingsRecord::*, const char*) -> SettingRow<T>;
template <class T>
SettingRow(T SettingsRecord::*, const char*, Disclosure) -> SettingRow<T>;
template <class T>
SettingRow(T SettingsRecord::*, const char*, Disclosure, const char*) -> SettingRow<T>;

/// The settings in the order of ZEP.cfg: the only place that lists them besides the record itself.
inline constexpr std::tuple kSettingRows{
    SettingRow{&SettingsRecord::SourceFolder, "SourceFolder", Disclosure::folder, "<source>"},
    SettingRow{&SettingsRecord::IncludeSubfolders, "IncludeSubfolders"},
    SettingRow{&SettingsRecord::DestinationFolder, "DestinationFolder", Disclosure::folder, "<destination>"},
    SettingRow{&SettingsRecord::DoneFolder, "DoneFolder", Disclosure::folder, "<done>"},
    SettingRow{&SettingsRecord::RunNormalAtStartup, "RunNormalAtStartup"},
    SettingRow{&SettingsRecord::ScanIntervalMs, "ScanIntervalMs"},
    SettingRow{&SettingsRecord::WeeklyDeleteDay, "WeeklyDeleteDay"},
    SettingRow{&SettingsRecord::WeeklyDeleteHour, "WeeklyDeleteHour"},
    SettingRow{&SettingsRecord::WeeklyDeleteMinute, "WeeklyDeleteMinute"},
    SettingRow{&SettingsRecord::WeeklyDeleteAmPm, "WeeklyDeleteAmPm", Disclosure::half},
    SettingRow{&SettingsRecord::WeeklyDeleteDaysOld, "WeeklyDeleteDaysOld"},
    SettingRow{&SettingsRecord::RunContinuallyAtStartup, "RunContinuallyAtStartup"},
    SettingRow{&SettingsRecord::RejectFolder, "RejectFolder", Disclosure::folder, "<rejected>"},
    SettingRow{&SettingsRecord::OverwriteExistingFiles, "OverwriteExistingFiles"},
    SettingRow{&SettingsRecord::LoggingTurnedOff, "LoggingTurnedOff"},
};

/// Shows the rows to the visitor, in their order, until it answers False. How many it answered with True.
template <class Visitor>
int visitSettings(Visitor&& visit) {
    int visited = 0;
    std::apply([&](const auto&... rows) { (void)((visit(rows) && (++visited, true)) && ...); }, kSettingRows);
    return visited;
}

/// Items in the one line of ZEP.cfg.
inline constexpr int kSettingsItems = std::tuple_size_v<decltype(kSettingRows)>;

}  // namespace vantrell
