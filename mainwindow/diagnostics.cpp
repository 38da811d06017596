// SPDX-License-Identifier: MIT
#include "mainwindow/diagnostics.h"

#include <algorithm>
#include <string_view>

#include "base/date_text.h"
#include "core/settings_rows.h"

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

std::string shownSetting(bool value, Disclosure, const char*) { return value ? "True" : "False"; }

std::string shownSetting(int value, Disclosure, const char*) { return std::to_string(value); }

std::string shownSetting(const std::string& text, Disclosure disclosure, const char* standIn) {
    if (disclosure == Disclosure::folder) return text.empty() ? "(empty)" : standIn;
    return text == "AM" || text == "PM" ? text : "(neither AM nor PM)";
}

std::string settingsText(const SettingsRecord& settings) {
    std::string text;
    visitSettings([&](const auto& row) {
        addLine(text, row.name, shownSetting(settings.*row.field, row.disclosure, row.standIn));
        return true;
    });
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
        text.append(secondStamp(event.time)).append(" ").append(event.masked).append("\n");
    return text;
}

}  // namespace vantrell
