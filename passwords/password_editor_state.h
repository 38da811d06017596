// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "passwords/password_operations.h"
#include "passwords/password_window.h"

namespace vantrell {

/// Which of the editor's buttons are shown, and what the Active box says: for a text that stands in the table, for a
/// new one, and for none.
class PasswordEditorState {
public:
    explicit PasswordEditorState(PasswordWindow& window) : window_(window) {}

    /// As at opening: nothing can be done yet.
    void reset();

    // Each changes what it names and leaves the rest; `apply` shows the outcome.
    void showAddButton();
    void hideAddButton() { controls_.add = false; }
    void showEditButtons();
    void hideEditButtons() { controls_.edit = controls_.erase = false; }
    void showActiveCheck() { controls_.active = true; }
    void hideActiveCheck() { controls_.active = false; }
    void apply() { window_.showControls(controls_); }

    /// The state for a text, given the table. Every row has its say and the last one stays: a stored password shows
    /// Edit and Delete only when it is the last of the table. An empty table changes nothing.
    void findRecord(const std::vector<PasswordRecord>& records, const std::string& text);

    /// A change that the program makes; it does not count as the operator's choice.
    void setActiveBox(bool set);
    /// The next change of the Active box does not count as the operator's choice.
    void ignoreActiveClick() { IgnoreActiveClick_ = true; }
    /// A change that the operator made, made again after the program has changed the box.
    void operatorSetsActive(bool set);
    /// The Active box has changed.
    void activeChanged();

private:
    void findIn(const PasswordRecord& record, const std::string& text);

    PasswordWindow& window_;
    PasswordControls controls_;
    bool ActiveChoice_ = false;
    bool IgnoreActiveClick_ = false;
};

}  // namespace vantrell
