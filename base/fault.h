// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// What the caller can do about something that failed.
enum class FaultKind {
    inUse,          ///< somebody writes to the file, or it is another one than before: try again later
    notThere,       ///< the file or a folder on its way does not exist
    nameTaken,      ///< something stands under the target name and may not be replaced
    noSpace,        ///< the target's file system is full or over quota
    deviceFailing,  ///< the target's file system is read-only or its writes fail
    other,          ///< anything else; the text says what
};

/// What went wrong: a kind for the program, and words for people (UTF-8).
struct Fault {
    FaultKind kind = FaultKind::other;
    std::string text;

    /// True when the machine is at fault and not the file that was at work.
    [[nodiscard]] bool isTheMachines() const { return kind == FaultKind::noSpace || kind == FaultKind::deviceFailing; }
};

}  // namespace vantrell
