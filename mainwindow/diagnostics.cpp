// SPDX-License-Identifier: MIT
#include "mainwindow/diagnostics.h"

#include <algorithm>
#include <string_view>

#include "base/date_text.h"
#include "mainwindow/masked_text.h"

namespace vantrell {

namespace {

constexpr std::size_t kLongestWord = 60;

bool isPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view(" .:;+-_()").find(c) != std::string_view::npos;
}

/// Versions and names of desktops look like this; a path does not.
std::string plainWord(const std::string& word) {
    if (word.empty()) return "(not set)";
    return word.size() <= kLongestWord && std::all_of(word.begin(), word.end(), isPlain) ? word : "<…>";
}

void addLine(std::string& text, std::string_view title, std::string_view value) {
    text.append(title).append(": ").append(value).append("\n");
}

void addFolder(std::string& text, std::string_view field, const Path& folder, std::string_view standIn) {
    addLine(text, field, folder.empty() ? "(empty)" : standIn);
}

void addFlag(std::string& text, std::string_view field, bool value) { addLine(text, field, value ? "True" : "False"); }

void addNumber(std::string& text, std::string_view field, int value) { addLine(text, field, std::to_string(value)); }

std::string settingsText(const SettingsRecord& settings) {
    std::string text;
    addFolder(text, "SourceFolder", settings.SourceFolder, "<source>");
    addFlag(text, "IncludeSubfolders", settings.IncludeSubfolders);
    addFolder(text, "DestinationFolder", settings.DestinationFolder, "<destination>");
    addFolder(text, "DoneFolder", settings.DoneFolder, "<done>");
    addFlag(text, "RunNormalAtStartup", settings.RunNormalAtStartup);
    addNumber(text, "ScanIntervalMs", settings.ScanIntervalMs);
    addNumber(text, "WeeklyDeleteDay", settings.WeeklyDeleteDay);
    addNumber(text, "WeeklyDeleteHour", settings.WeeklyDeleteHour);
    addNumber(text, "WeeklyDeleteMinute", settings.WeeklyDeleteMinute);
    const bool isHalfOfDay = settings.WeeklyDeleteAmPm == "AM" || settings.WeeklyDeleteAmPm == "PM";
    addLine(text, "WeeklyDeleteAmPm", isHalfOfDay ? settings.WeeklyDeleteAmPm : "(neither AM nor PM)");
    addNumber(text, "WeeklyDeleteDaysOld", settings.WeeklyDeleteDaysOld);
    addFlag(text, "RunContinuallyAtStartup", settings.RunContinuallyAtStartup);
    addFolder(text, "RejectFolder", settings.RejectFolder, "<rejected>");
    addFlag(text, "OverwriteExistingFiles", settings.OverwriteExistingFiles);
    addFlag(text, "LoggingTurnedOff", settings.LoggingTurnedOff);
    return text;
}

}  // namespace

std::string diagnosticsText(const DiagnosticsFacts& facts) {
    std::string text;
    addLine(text, facts.about.title, facts.about.version);
    for (const LibraryVersion& library : facts.about.libraries) addLine(text, library.name, plainWord(library.version));
    for (const auto& [title, value] : facts.machine) addLine(text, title, plainWord(value));
    text.append("\nSettings\n").append(settingsText(facts.settings));
    text.append("\nLast events (<…> stands for names, which are left out)\n");
    for (const LoggedEvent& event : facts.events)
        text.append(secondStamp(event.time)).append(" ").append(maskedMessage(event.message)).append("\n");
    return text;
}

}  // namespace vantrell
