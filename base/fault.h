// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// What the caller can do about something that failed.
enum class FaultKind {
    inUse,          ///< another program writes to the file, or a different file has its name now: try again later
    notThere,       ///< the file or a folder on its way does not exist
    nameTaken,      ///< there is something with the target name already, and it may not be replaced
    noSpace,        ///< the target's file system is full or over quota
    deviceFailing,  ///< the target's file system is read-only or its writes fail
    machine,        ///< no file's fault either: no descriptor is left, a server does not answer, a folder takes no file
    notPermitted,   ///< this one file may not be moved by us (another owner's): it stays where it is
    nameTooLong,    ///< the target folder takes no name of this length
    other,          ///< anything else; the text says what
};

/// What went wrong: a kind for the program, and words for people (UTF-8).
struct Fault {
    FaultKind kind = FaultKind::other;
    std::string text;

    /// True when the machine is at fault and not the file that was at work.
    [[nodiscard]] bool isTheMachines() const {
        return kind == FaultKind::noSpace || kind == FaultKind::deviceFailing || kind == FaultKind::machine;
    }
};

}  // namespace vantrell
