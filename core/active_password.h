// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/main_window.h"
#include "core/mode_display.h"
#include "platform/message_boxes.h"
#include "task/task.h"
#include "task/task_lock.h"

namespace vantrell {

/// The password with which files are encrypted, as it was read last. Whoever needs it while it is being looked up is
/// woken when that is over. It must outlive the tasks that use it.
class ActivePassword {
public:
    /// Reads the password table: the active password, empty where none is active; nothing when the table could not be
    /// read, of which a box has told.
    using Reader = std::function<Task<std::optional<std::string>>()>;

    ActivePassword(RunQueue& queue, Reader read) : lookups_(queue), read_(std::move(read)) {}

    /// Empty while there is none, and while it is being looked up.
    [[nodiscard]] const std::string& known() const { return password_; }
    /// Somebody else has read the table.
    void set(std::string password) { password_ = std::move(password); }

    // All of these wait for a lookup under way, and give the password; empty: there is none.

    /// Forgets the password and reads it anew.
    Task<std::string> lookUp();
    /// Reads it only when none is known.
    Task<std::string> find();
    /// Reads nothing.
    Task<std::string> settled();

    [[nodiscard]] bool isBeingLookedUp() const { return lookups_.isHeld(); }

private:
    TaskLock lookups_;
    Reader read_;
    std::string password_;
};

/// What follows when there is no active password: processing stops, and the operator is told.
class NoActivePassword {
public:
    static constexpr char kText[] = "There is no active password.  Encryption has stopped.";
    /// As it stands in the main window and in the log.
    static constexpr char kLine[] = "There is no active password.  Encryption has stopped..";

    NoActivePassword(ModeDisplay& mode, MainWindow& window, MessageBoxes& boxes)
        : mode_(mode), window_(window), boxes_(boxes) {}

    /// Nobody waits for the box: one that stays open for weeks must not keep the state of the program in between.
    void tell() {
        mode_.TurnOffTimRun();
        window_.setLabel2(kLine);
        boxes_.inform({kApplicationTitle, kText});
    }

private:
    ModeDisplay& mode_;
    MainWindow& window_;
    MessageBoxes& boxes_;
};

}  // namespace vantrell
