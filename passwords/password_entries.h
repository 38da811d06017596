// SPDX-License-Identifier: MIT
#pragma once

namespace vantrell {

/// The menu entry "Update/Add Passwords".
class PasswordEditorEntry {
public:
    PasswordEditorEntry() = default;
    PasswordEditorEntry(const PasswordEditorEntry&) = delete;
    PasswordEditorEntry& operator=(const PasswordEditorEntry&) = delete;
    virtual ~PasswordEditorEntry() = default;

    /// Opens the window and fills its list; one that is open comes to the front.
    virtual void open() = 0;
};

/// The menu entry "View Current Password".
class CurrentPasswordEntry {
public:
    CurrentPasswordEntry() = default;
    CurrentPasswordEntry(const CurrentPasswordEntry&) = delete;
    CurrentPasswordEntry& operator=(const CurrentPasswordEntry&) = delete;
    virtual ~CurrentPasswordEntry() = default;

    virtual void viewCurrentPasswordChosen() = 0;
};

}  // namespace vantrell
