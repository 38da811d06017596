// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vantrell {

/// One line of the list: the password as the table holds it, and "True" or "False".
struct PasswordRow {
    std::string password;
    std::string activeText;

    bool operator==(const PasswordRow&) const = default;
};

/// Which controls can be seen, and with that be used.
struct PasswordControls {
    bool add = false;
    bool edit = false;
    bool erase = false;
    bool active = false;

    bool operator==(const PasswordControls&) const = default;
};

/// What the window of the password editor can be told, and asked. Passwords are UTF-8. What the program itself changes
/// is not reported back as an event.
class PasswordWindow {
public:
    PasswordWindow() = default;
    PasswordWindow(const PasswordWindow&) = delete;
    PasswordWindow& operator=(const PasswordWindow&) = delete;
    virtual ~PasswordWindow() = default;

    [[nodiscard]] virtual std::string enteredPassword() const = 0;
    virtual void setEnteredPassword(const std::string& password) = 0;
    [[nodiscard]] virtual bool isActiveSet() const = 0;
    virtual void setActiveSet(bool set) = 0;

    virtual void showRows(const std::vector<PasswordRow>& rows) = 0;
    [[nodiscard]] virtual std::optional<std::size_t> selectedRow() const = 0;

    virtual void showControls(const PasswordControls& controls) = 0;
    /// A sentence about the entered password; empty: nothing to say.
    virtual void setNote(const std::string& text) = 0;
    virtual void focusPassword() = 0;
    virtual void focusActive() = 0;

    /// Shows the window before the others, also when it is shown already.
    virtual void showWindow() = 0;
    virtual void closeWindow() = 0;
};

/// What the operator does in the window. It forwards everything and decides nothing.
class PasswordWindowEvents {
public:
    PasswordWindowEvents() = default;
    PasswordWindowEvents(const PasswordWindowEvents&) = delete;
    PasswordWindowEvents& operator=(const PasswordWindowEvents&) = delete;
    virtual ~PasswordWindowEvents() = default;

    /// The text box holds another text.
    virtual void passwordEdited() = 0;
    /// The Active box was set or cleared.
    virtual void activeClicked() = 0;
    /// A click in the list, on a row or beside them, or a row selected with the keyboard.
    virtual void listClicked() = 0;
    virtual void addPressed() = 0;
    virtual void editPressed() = 0;
    virtual void deletePressed() = 0;
    virtual void exitPressed() = 0;
    /// The window never closes by itself.
    virtual void closeBoxPressed() = 0;
};

}  // namespace vantrell
