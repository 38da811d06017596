// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// What the password store needs of the window in which passwords are edited.
class PasswordEditor {
public:
    PasswordEditor() = default;
    PasswordEditor(const PasswordEditor&) = delete;
    PasswordEditor& operator=(const PasswordEditor&) = delete;
    virtual ~PasswordEditor() = default;

    /// The text box, its characters as UTF-8.
    [[nodiscard]] virtual std::string enteredPassword() const = 0;
    /// Whether the Active box is set.
    [[nodiscard]] virtual bool activeChoice() const = 0;

    /// Whether something is typed, a question stands open, or the editor is at work: then nobody else closes it.
    [[nodiscard]] virtual bool isInUse() = 0;

    virtual void clearList() = 0;
    /// One row of the list: the password as the table holds it, and "True" or "False".
    virtual void addRow(const std::string& password, const std::string& activeText) = 0;
    /// The state in which a new password can be entered.
    virtual void showAddButton() = 0;

    /// Asks the editor to close. The store has let go of it already and calls nothing of it any more. It comes from
    /// within a store operation, which may be a task of the editor's own: the editor ends that task and itself in a
    /// later turn of the event loop.
    virtual void unload() = 0;
};

}  // namespace vantrell
