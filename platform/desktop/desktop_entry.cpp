// SPDX-License-Identifier: MIT
#include "platform/desktop/desktop_entry.h"

#include <algorithm>

#include "base/display_text.h"

namespace vantrell {

namespace {

constexpr std::string_view kGroup = "[Desktop Entry]";
constexpr std::string_view kBlanks = " \t";
// What a backslash must stand before inside the double quotes of a command line.
constexpr std::string_view kQuotedByBackslash = "\"`$\\";

std::string_view trimmed(std::string_view text) {
    const auto begin = text.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string_view takeLine(std::string_view& text) {
    const auto end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

char escapedBy(char letter) {
    switch (letter) {
        case 's':
            return ' ';
        case 'n':
            return '\n';
        case 't':
            return '\t';
        case 'r':
            return '\r';
        default:
            return letter;
    }
}

/// Splits a command line into its words.
class ExecWords {
public:
    explicit ExecWords(std::string_view command) : command_(command) {}

    std::optional<std::vector<std::string>> split() {
        for (; at_ < command_.size(); ++at_) takeCharacter();
        endWord();
        if (isQuoted_) return std::nullopt;
        return std::move(words_);
    }

private:
    void takeCharacter() {
        const char character = command_[at_];
        if (character == '"') {
            isQuoted_ = !isQuoted_;
            isInWord_ = true;
        } else if (character == '\\' && at_ + 1 < command_.size() &&
                   (!isQuoted_ || kQuotedByBackslash.find(command_[at_ + 1]) != std::string_view::npos)) {
            append(command_[++at_]);
        } else if (character == '%' && at_ + 1 < command_.size()) {
            if (command_[++at_] == '%') append('%');
        } else if (!isQuoted_ && kBlanks.find(character) != std::string_view::npos) {
            endWord();
        } else {
            append(character);
        }
    }

    void append(char character) {
        word_ += character;
        isInWord_ = true;
    }

    void endWord() {
        if (isInWord_ && !isQuoted_) words_.push_back(std::move(word_));
        word_.clear();
        isInWord_ = false;
    }

    std::string_view command_;
    std::size_t at_ = 0;
    std::vector<std::string> words_;
    std::string word_;
    bool isInWord_ = false;
    bool isQuoted_ = false;
};

}  // namespace

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text) {
    DesktopEntry entry;
    bool isInGroup = false;
    bool isFirstGroup = true;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (trimmed(line).empty() || line.starts_with('#')) continue;
        if (line.starts_with('[')) {
            isInGroup = trimmed(line) == kGroup;
            // The file's own group comes first, or desktops do not take the file.
            if (isFirstGroup && !isInGroup) return std::nullopt;
            isFirstGroup = false;
            continue;
        }
        const auto equals = line.find('=');
        if (isFirstGroup || equals == std::string_view::npos) return std::nullopt;
        if (isInGroup) entry.values_[std::string(trimmed(line.substr(0, equals)))] = trimmed(line.substr(equals + 1));
    }
    if (isFirstGroup) return std::nullopt;
    return entry;
}

std::string DesktopEntry::value(const std::string& key) const {
    const auto found = values_.find(key);
    if (found == values_.end()) return {};
    const std::string& raw = found->second;
    std::string text;
    for (std::size_t at = 0; at < raw.size(); ++at)
        text += raw[at] == '\\' && at + 1 < raw.size() ? escapedBy(raw[++at]) : raw[at];
    return text;
}

std::vector<std::string> DesktopEntry::list(const std::string& key) const {
    std::vector<std::string> items;
    const std::string text = value(key);
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find(';', begin), text.size());
        items.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    return items;
}

bool DesktopEntry::flag(const std::string& key, bool otherwise) const {
    const std::string text = value(key);
    if (text == "true" || text == "1") return true;
    if (text == "false" || text == "0") return false;
    return otherwise;
}

std::optional<std::vector<std::string>> wordsOfExec(std::string_view command) { return ExecWords(command).split(); }

std::string quotedForExec(std::string_view argument) {
    std::string word = "\"";
    for (const char character : argument) {
        if (kQuotedByBackslash.find(character) != std::string_view::npos) word += '\\';
        if (character == '%') word += '%';
        word += character;
    }
    return word + '"';
}

std::string escapedValue(std::string_view text) {
    std::string value;
    for (const char character : text) {
        if (character == '\\') value += '\\';
        value += character;
    }
    return value;
}

// Nothing in it is a control character, a line break or no UTF-8.
bool canStandInDesktopEntry(const Path& path) { return displayText(path) == path; }

}  // namespace vantrell
