// SPDX-License-Identifier: MIT
#include "folderpicker/places.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace vantrell {

namespace {

constexpr std::string_view kSystemFolders[] = {"/boot", "/efi", "/etc", "/home", "/snap", "/tmp", "/usr", "/var"};

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    for (std::size_t end = 0; end != std::string_view::npos; text.remove_prefix(std::min(end + 1, text.size()))) {
        end = text.find(separator);
        parts.push_back(text.substr(0, end));
    }
    return parts;
}

/// Bytes that are written as a sign and digits of their number.
Path decoded(std::string_view text, char sign, std::size_t digits, int base) {
    Path path;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned byte = 0;
        const char* const first = text.data() + at + 1;
        const bool fits = text[at] == sign && at + digits < text.size();
        if (fits && std::from_chars(first, first + digits, byte, base).ptr == first + digits) {
            path += static_cast<char>(byte);
            at += digits;
        } else {
            path += text[at];
        }
    }
    return path;
}

bool belongsToTheSystem(const Path& folder) {
    return folder.size() <= 1 || std::any_of(std::begin(kSystemFolders), std::end(kSystemFolders), [&](auto system) {
               return folder == system || folder.starts_with(std::string(system) + kPathSeparator);
           });
}

}  // namespace

std::vector<Path> disksIn(std::string_view mountInfo) {
    constexpr std::size_t kRoot = 3;
    constexpr std::size_t kPlace = 4;
    std::vector<Path> disks;
    for (const std::string_view line : split(mountInfo, '\n')) {
        const std::vector<std::string_view> fields = split(line, ' ');
        const auto dash = std::find(fields.begin(), fields.end(), "-");
        if (fields.end() - dash < 3 || dash - fields.begin() <= static_cast<std::ptrdiff_t>(kPlace)) continue;
        const std::string_view source = dash[2];
        const bool isDisk = source.starts_with("/dev/") && !source.starts_with("/dev/loop") && fields[kRoot] == "/";
        const Path place = decoded(fields[kPlace], '\\', 3, 8);
        if (isDisk && !belongsToTheSystem(place)) disks.push_back(place);
    }
    return disks;
}

std::vector<Path> bookmarksIn(std::string_view text) {
    constexpr std::string_view kLocal = "file://";
    std::vector<Path> bookmarks;
    for (std::size_t at = text.find(kLocal); at != std::string_view::npos; at = text.find(kLocal)) {
        text.remove_prefix(at + kLocal.size());
        const Path folder = decoded(text.substr(0, text.find_first_of(" \"\r\n")), '%', 2, 16);
        if (folder.size() > 1 && folder.front() == kPathSeparator) bookmarks.push_back(folder);
    }
    return bookmarks;
}

}  // namespace vantrell
