// SPDX-License-Identifier: MIT
#include "passwords/password_lookup.h"

namespace vantrell {

namespace {

class UiLoadingRaised {
public:
    explicit UiLoadingRaised(ProgramState& state) : state_(state) { state_.UiLoading = true; }
    UiLoadingRaised(const UiLoadingRaised&) = delete;
    UiLoadingRaised& operator=(const UiLoadingRaised&) = delete;
    ~UiLoadingRaised() { state_.UiLoading = false; }

private:
    ProgramState& state_;
};

/// Stands in for the editor's window, and is loaded as long as it lives.
class HiddenEditor final : public PasswordEditor {
public:
    explicit HiddenEditor(PasswordStore& store) : store_(store) { store_.attachEditor(*this); }
    HiddenEditor(const HiddenEditor&) = delete;
    HiddenEditor& operator=(const HiddenEditor&) = delete;
    ~HiddenEditor() override { store_.detachEditor(*this); }

    [[nodiscard]] std::string enteredPassword() const override { return {}; }
    [[nodiscard]] bool activeChoice() const override { return false; }
    void clearList() override {}
    void addRow(const std::string&, const std::string&) override {}
    void showAddButton() override {}
    void unload() override {}

private:
    PasswordStore& store_;
};

Task<void> lookUpHidden(PasswordStore& store) {
    const HiddenEditor hidden(store);
    // Whether it was found is told by ActivePassword, and a failure by a box.
    static_cast<void>(co_await store.findCurrentPassword());
}

}  // namespace

Task<void> lookUpActivePassword(PasswordStore& store, ProgramState& state) {
    const UiLoadingRaised raised(state);
    if (store.editor() == nullptr) {
        co_await lookUpHidden(store);
        co_return;
    }
    static_cast<void>(co_await store.findCurrentPassword());
    store.unloadEditor();
}

}  // namespace vantrell
