// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace vantrell {

/// A periodic timer of the event loop. Disabled when new; destroying it ends it.
class Timer {
public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    virtual ~Timer() = default;

    /// Milliseconds, at least 1. An enabled timer begins its period anew.
    virtual void setInterval(std::int32_t milliseconds) = 0;
    [[nodiscard]] virtual std::int32_t interval() const = 0;
    virtual void setEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// What is done at each tick; nothing before this is called. It must not destroy the timer.
    void onTick(std::function<void()> tick) { tick_ = std::move(tick); }

protected:
    void tick() const {
        if (tick_) tick_();
    }

private:
    std::function<void()> tick_;
};

class Timers {
public:
    Timers() = default;
    Timers(const Timers&) = delete;
    Timers& operator=(const Timers&) = delete;
    virtual ~Timers() = default;

    /// `name` is for people who look into the running program.
    virtual std::unique_ptr<Timer> create(const std::string& name) = 0;
};

}  // namespace vantrell
