// SPDX-License-Identifier: MIT
#include "platform/qt/qt_timers.h"

#include <QTimer>
#include <algorithm>

namespace vantrell {

namespace {

class QtTimer final : public Timer {
public:
    explicit QtTimer(const std::string& name) {
        timer_.setObjectName(QString::fromStdString(name));
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { tick(); });
    }

    // Qt would tick without a pause at 0 ms, and refuses negative intervals.
    void setInterval(std::int32_t milliseconds) override { timer_.setInterval(std::max(milliseconds, 1)); }
    [[nodiscard]] std::int32_t interval() const override { return timer_.interval(); }
    void setEnabled(bool enabled) override {
        if (!enabled) return timer_.stop();
        if (!timer_.isActive()) timer_.start();
    }
    [[nodiscard]] bool isEnabled() const override { return timer_.isActive(); }

private:
    QTimer timer_;
};

}  // namespace

std::unique_ptr<Timer> QtTimers::create(const std::string& name) { return std::make_unique<QtTimer>(name); }

}  // namespace vantrell
