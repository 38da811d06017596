// SPDX-License-Identifier: MIT
#pragma once

#include "core/active_password.h"
#include "core/ending.h"
#include "core/main_window.h"
#include "core/mode_display.h"
#include "passwords/password_entries.h"
#include "platform/message_boxes.h"
#include "task/task_group.h"

namespace vantrell {

/// What the menu entry works with; everything outlives it.
struct CurrentPasswordParts {
    ProgramState& state;
    MainWindow& window;
    MessageBoxes& boxes;
    ModeDisplay& mode;
    ActivePasswordLookup lookUpActivePassword;
    RunQueue& queue;
};

/// Looks the active password up and shows it in a box. Without one, processing stops.
class CurrentPassword final : public CurrentPasswordEntry, public Endable {
public:
    explicit CurrentPassword(CurrentPasswordParts parts) : p_(std::move(parts)), lookup_(p_.queue) {}

    void viewCurrentPasswordChosen() override {
        if (lookup_.isIdle()) lookup_.start(viewCurrentPassword());
    }
    void abort() override { lookup_.abort(); }

private:
    Task<void> viewCurrentPassword();

    CurrentPasswordParts p_;
    TaskGroup lookup_;
};

}  // namespace vantrell
