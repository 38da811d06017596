// SPDX-License-Identifier: MIT
#include "folderpicker/folder_choice.h"

#include "base/display_text.h"

namespace vantrell {

namespace {

// Removes double and closing separators, so that "/srv//in/" equals "/srv/in".
Path plain(const Path& folder) {
    Path result;
    for (const char byte : folder)
        if (byte != kPathSeparator || result.empty() || result.back() != kPathSeparator) result += byte;
    while (result.size() > 1 && result.back() == kPathSeparator) result.pop_back();
    return result;
}

bool isSame(const Path& one, const Path& other) { return !one.empty() && plain(one) == plain(other); }

bool liesInside(const Path& folder, const Path& outer) {
    return !outer.empty() && !isSame(folder, outer) && plain(folder).starts_with(plain(outer) + kPathSeparator);
}

class Sentences {
public:
    void add(const char* sentence) {
        if (!text_.empty()) text_ += ' ';
        text_ += sentence;
    }
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    std::string text_;
};

void warnOfSameFolders(const SettingsRecord& s, Sentences& warning) {
    if (isSame(s.DestinationFolder, s.SourceFolder))
        warning.add("Destination is the Source folder: the encrypted files stay among those still to be encrypted.");
    if (isSame(s.DoneFolder, s.SourceFolder))
        warning.add("Done is the Source folder: no file will be encrypted until one of the two is changed.");
    if (isSame(s.RejectFolder, s.SourceFolder))
        warning.add("Rejected is the Source folder: no file will be encrypted until one of the two is changed.");
    if (isSame(s.DoneFolder, s.DestinationFolder))
        warning.add(
            "Done is the Destination folder: the originals stand unencrypted beside the encrypted files, and "
            "the weekly delete deletes nothing.");
    if (isSame(s.RejectFolder, s.DestinationFolder))
        warning.add("Rejected is the Destination folder: rejected files stand unencrypted among the encrypted ones.");
    if (isSame(s.RejectFolder, s.DoneFolder))
        warning.add(
            "Rejected is the Done folder: rejected files, of which there is no encrypted copy, stand among the "
            "originals of those that were encrypted, and the weekly delete deletes nothing.");
}

void warnOfFoldersInsideSource(const SettingsRecord& s, Sentences& warning) {
    if (!s.IncludeSubfolders) return;
    if (liesInside(s.DestinationFolder, s.SourceFolder))
        warning.add(
            "Destination lies inside Source, whose sub directories are included: every pass finds the encrypted "
            "files again and passes over them.");
    if (liesInside(s.DoneFolder, s.SourceFolder))
        warning.add(
            "Done lies inside Source, whose sub directories are included: files that are put there to be "
            "encrypted are not found.");
    if (liesInside(s.RejectFolder, s.SourceFolder))
        warning.add(
            "Rejected lies inside Source, whose sub directories are included: files that are put there to be "
            "encrypted are not found.");
}

NewFolder refused(std::string words) { return {{}, std::move(words)}; }

}  // namespace

Path startFolder(const Path& wanted, const Path& home, const FileToolbox& toolbox) {
    for (Path folder = plain(wanted), above; !folder.empty(); folder = above) {
        if (toolbox.isFolder(folder)) return folder;
        above = folderOf(folder);
        // The search upwards ends at the root, or at an empty path. Neither is a useful place to open when a folder is
        // lost.
        if (above.size() == 1) break;
    }
    return home;
}

NewFolder createFolder(const Path& inside, const std::string& name, FileToolbox& toolbox) {
    if (name.find(kPathSeparator) != std::string::npos)
        return refused("The name of a folder cannot hold a \"/\".\r\nPlease enter a different name");
    const Path path = plain(joinPath(inside, name));
    if (toolbox.kindOf(path) != EntryKind::missing)
        return refused("A Folder of that name already exists.\r\nPlease enter a different name");
    if (!toolbox.makeFolder(path))
        return refused("The folder " + displayText(name) + " could not be created in\r\n" + displayText(inside) +
                       "\r\nPlease enter a different name or select another folder");
    return {path, {}};
}

std::string folderWarning(const SettingsRecord& settings) {
    Sentences warning;
    warnOfSameFolders(settings, warning);
    warnOfFoldersInsideSource(settings, warning);
    if (settings.IncludeSubfolders && settings.OverwriteExistingFiles)
        warning.add(
            "Sub directories are included and existing files are overwritten: files of the same name from "
            "different sub directories replace one another when they come in different passes.");
    return warning.text();
}

}  // namespace vantrell
