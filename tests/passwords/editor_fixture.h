// SPDX-License-Identifier: MIT
#pragma once

#include "passwords/password_fixture.h"

namespace vantrell::test {

inline constexpr char kNothing[] = "";
inline constexpr char kNewPassword[] = "Add Active ";
inline constexpr char kStoredPassword[] = "Edit Delete Active ";
inline const Strings kThree{"one=0", "Two=1", "last=0"};

/// The editor on a real file.
class EditorFixture : public PasswordFixture {
protected:
    void openWithThree() {
        fill("INSERT INTO EncDecPasswords VALUES ('one', 0), ('Two', 1), ('last', 0)");
        open();
    }
    void open() {
        controller.open();
        loop.settle();
    }
    void type(const std::string& text) {
        window.text = text;
        controller.passwordEdited();
        loop.settle();
    }
    void tick(bool set) {
        if (window.active == set) return;
        window.active = set;
        controller.activeClicked();
    }
    void choose(std::optional<std::size_t> row) {
        window.selected = row;
        controller.listClicked();
        loop.settle();
    }
    void press(void (PasswordEditorController::*button)()) {
        (controller.*button)();
        loop.settle();
    }

    void expectQuestion(const std::string& text) {
        ASSERT_EQ(boxes.asked.size(), 1u);
        EXPECT_EQ(boxes.asked[0].title + ": " + boxes.asked[0].text, "Active Password: " + text);
        EXPECT_EQ(boxes.asked[0].buttons, Buttons::yesNo);
    }
    void expectTable(const Strings& records) {
        EXPECT_EQ(stored(), records);
        EXPECT_EQ(window.rows, records);
    }
    void expectEmptied() {
        EXPECT_EQ(window.text, "");
        EXPECT_EQ(window.shown, kNothing);
    }

    static constexpr auto kAdd = &PasswordEditorController::addPressed;
    static constexpr auto kEdit = &PasswordEditorController::editPressed;
    static constexpr auto kDelete = &PasswordEditorController::deletePressed;
    static constexpr auto kExit = &PasswordEditorController::exitPressed;
    static constexpr auto kCloseBox = &PasswordEditorController::closeBoxPressed;
};

}  // namespace vantrell::test
