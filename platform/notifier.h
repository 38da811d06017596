// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vantrell {

/// The desktop's notifications (freedesktop Desktop Notifications). One of ours is shown at a time: a new one takes
/// the place of the one before. Does nothing where the desktop has none.
class Notifier {
public:
    Notifier() = default;
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;
    virtual ~Notifier() = default;

    /// Plain UTF-8 texts, no markup.
    virtual void show(const std::string& title, const std::string& text) = 0;
    virtual void withdraw() = 0;
};

}  // namespace vantrell
