// SPDX-License-Identifier: MIT
#include "passwords/password_editor_state.h"

namespace vantrell {

void PasswordEditorState::reset() {
    controls_ = {};
    ActiveChoice_ = false;
    IgnoreActiveClick_ = false;
    window_.setActiveSet(false);
    apply();
}

void PasswordEditorState::showAddButton() {
    hideEditButtons();
    controls_.add = true;
    showActiveCheck();
}

void PasswordEditorState::showEditButtons() {
    hideAddButton();
    controls_.edit = controls_.erase = true;
}

void PasswordEditorState::findRecord(const std::vector<PasswordRecord>& records, const std::string& text) {
    for (const PasswordRecord& record : records) findIn(record, text);
    apply();
}

void PasswordEditorState::findIn(const PasswordRecord& record, const std::string& text) {
    if (record.Password == text) {
        ActiveChoice_ = window_.isActiveSet();
        setActiveBox(record.Active);
        showEditButtons();
        showActiveCheck();
    } else if (!text.empty()) {
        showAddButton();
        setActiveBox(ActiveChoice_);
    } else {
        hideEditButtons();
        hideAddButton();
        setActiveBox(false);
        hideActiveCheck();
    }
}

// A box that is set to what it says already reports no change, and the next change is the one that is ignored.
void PasswordEditorState::setActiveBox(bool set) {
    ignoreActiveClick();
    operatorSetsActive(set);
}

void PasswordEditorState::operatorSetsActive(bool set) {
    if (window_.isActiveSet() == set) return;
    window_.setActiveSet(set);
    activeChanged();
}

void PasswordEditorState::activeChanged() {
    if (!IgnoreActiveClick_) ActiveChoice_ = window_.isActiveSet();
    IgnoreActiveClick_ = false;
}

}  // namespace vantrell
