// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <utility>

namespace vantrell {

/// The desktop's notifications (freedesktop Desktop Notifications). One of ours is shown at a time: a new one takes
/// the place of the one before. Does nothing where the desktop has none.
class Notifier {
public:
    Notifier() = default;
    Notifier(const Notifier&) = delete;
    Notifier& operator=(const Notifier&) = delete;
    virtual ~Notifier() = default;

    enum class Urgency {
        normal,
        critical,  ///< it stays until somebody has seen it
    };

    /// Plain UTF-8 texts, no markup.
    virtual void show(const std::string& title, const std::string& text, Urgency urgency) = 0;
    virtual void withdraw() = 0;

    /// What a click on a notification does.
    void onClicked(std::function<void()> clicked) { clicked_ = std::move(clicked); }

protected:
    void wasClicked() const {
        if (clicked_) clicked_();
    }

private:
    std::function<void()> clicked_;
};

}  // namespace vantrell
