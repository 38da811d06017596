// SPDX-License-Identifier: MIT
#include "mainwindow/masked_text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vantrell {

namespace {

constexpr char kMask[] = "<…>";

// The program's messages; "*" stands for what is not the program's own words. Where several fit, the first is taken.
constexpr std::array kMessages{
    "Loading",
    "Loaded",
    "ZEP Is Started at *",
    "ZEP Timer Is STOPPED",
    "ZEP Is Running at *",
    "ZEP Is PAUSED at *",
    "ZEP is now searching folders!",
    "Please Wait ZEP is searching for files!",
    "Please Wait Encrypting files.",
    "No Records this pass!",
    "User Stopped Encrypting Files",
    "User has Stopped Process!D",
    "User Turned off Logging",
    "User Turned on Logging",
    "Done Encrpting Files",
    "There is no active password.  Encryption has stopped..",
    "There is no active password.  Encryption has stopped.",
    "One or all of the folders are missing. Please check below.",
    "One or all of the folder  parameters are missing. Please check below.",
    "Source, Destination or Done Folders are missing",
    "Source Folder * does not exist bypassing events!",
    "Destination Folder * does not exist bypassing * events!",
    "Done Folder * does not exist bypassing * events!",
    "Done Folder * is the Source Folder bypassing events!",
    "Reject Folder * is the Source Folder bypassing events!",
    " Encrypting file * already exists in the folder!.",
    " Moving orginal file * already exists in the folder!.",
    "Encryped:  * - Sucessful: ",
    "Encrypting:  * - FAILED: *",
    "File * File exists rename file to *",
    "File * did not rename file!",
    "File * did not move to reject folder!",
    "File * did not encrypt!",
    "File * did move to *!",
    "Folder * - FAILED: *",
    "Executing Weekly Delete ...Deleting File: *",
    "Weekly Delete could not delete File: * - FAILED: *",
    "Weekly Delete: the days old are not set (7 to 14). Nothing is deleted.",
    "Weekly Delete is held back: *",
    "Done Folder * is the * Folder too. Weekly Delete deletes nothing.",
};

// How the host ends the words of a failure: these tell what happened and nothing of where.
constexpr std::array kReasons{
    "No such file or directory",
    "Permission denied",
    "Operation not permitted",
    "File exists",
    "No space left on device",
    "Disk quota exceeded",
    "Read-only file system",
    "Input/output error",
    "File name too long",
    "Too many open files",
    "Device or resource busy",
    "Stale file handle",
    "Transport endpoint is not connected",
};

std::vector<std::string_view> piecesOf(std::string_view pattern) {
    std::vector<std::string_view> pieces;
    for (std::size_t star = pattern.find('*'); star != std::string_view::npos; star = pattern.find('*')) {
        pieces.push_back(pattern.substr(0, star));
        pattern.remove_prefix(star + 1);
    }
    pieces.push_back(pattern);
    return pieces;
}

bool fits(std::string_view message, const std::vector<std::string_view>& pieces) {
    if (pieces.size() == 1) return message == pieces.front();
    if (!message.starts_with(pieces.front())) return false;
    message.remove_prefix(pieces.front().size());
    if (!message.ends_with(pieces.back())) return false;
    message.remove_suffix(pieces.back().size());
    for (std::size_t i = 1; i + 1 < pieces.size(); ++i) {
        const std::size_t found = message.find(pieces[i]);
        if (found == std::string_view::npos) return false;
        message.remove_prefix(found + pieces[i].size());
    }
    return true;
}

std::string joined(const std::vector<std::string_view>& pieces) {
    std::string text(pieces.front());
    for (std::size_t i = 1; i < pieces.size(); ++i) text.append(kMask).append(pieces[i]);
    return text;
}

std::string reasonOf(std::string_view message) {
    const auto found = std::find_if(kReasons.begin(), kReasons.end(), [&](std::string_view reason) {
        return message.ends_with(std::string(": ").append(reason));
    });
    return found == kReasons.end() ? std::string() : std::string(": ").append(*found);
}

}  // namespace

std::string maskedMessage(std::string_view message) {
    for (const std::string_view pattern : kMessages) {
        const std::vector<std::string_view> pieces = piecesOf(pattern);
        if (!fits(message, pieces)) continue;
        const bool mayEndWithReason = pattern.ends_with(" - FAILED: *");
        return joined(pieces) + (mayEndWithReason ? reasonOf(message) : std::string());
    }
    return kMask;
}

}  // namespace vantrell
