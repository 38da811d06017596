// SPDX-License-Identifier: MIT
#pragma once

#include "core/active_password.h"
#include "core/ending.h"
#include "passwords/password_entries.h"
#include "platform/message_boxes.h"
#include "task/task_group.h"

namespace vantrell {

/// Looks the active password up and shows it in a box. Without one, processing stops.
class CurrentPassword final : public CurrentPasswordEntry, public Endable {
public:
    /// Everything outlives it.
    CurrentPassword(ActivePassword& password, NoActivePassword& none, MessageBoxes& boxes, RunQueue& queue)
        : password_(password), none_(none), boxes_(boxes), lookup_(queue) {}

    void viewCurrentPasswordChosen() override {
        if (lookup_.isIdle()) lookup_.start(viewCurrentPassword());
    }
    void abort() override { lookup_.abort(); }

private:
    Task<void> viewCurrentPassword() {
        const std::string found = co_await password_.lookUp();
        if (found.empty()) co_return none_.tell();
        boxes_.inform({kApplicationTitle, found});
    }

    ActivePassword& password_;
    NoActivePassword& none_;
    MessageBoxes& boxes_;
    TaskGroup lookup_;
};

}  // namespace vantrell
