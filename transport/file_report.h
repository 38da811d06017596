// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "activitylog/status_report.h"

namespace vantrell {

/// What is said about one file at work. About a file that the pass before has left in Source nothing is said again,
/// unless it turns out that something has changed.
class FileReport {
public:
    /// `leftBefore` is how the pass before left the file; empty when it did not.
    FileReport(StatusReport& report, ActivityLog& log, std::string leftBefore)
        : report_(report), log_(log), leftBefore_(std::move(leftBefore)), isHeldBack_(!leftBefore_.empty()) {}

    void showInPanel1(const Message& message) { say({message, true}); }
    void logEvent(const Message& message) { say({message, false}); }

    /// Something has changed: says what was held back, and everything else at once from here on.
    void speak();
    /// The file stays in Source. When it stays as the pass before left it, what was held back is forgotten.
    void left(const std::string& how);

private:
    struct Saying {
        Message message;
        bool isShown;
    };
    void say(Saying saying);
    void sayNow(const Saying& saying);

    StatusReport& report_;
    ActivityLog& log_;
    std::string leftBefore_;
    bool isHeldBack_;
    std::vector<Saying> heldBack_;
};

}  // namespace vantrell
