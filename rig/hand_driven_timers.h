// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/timers.h"

namespace vantrell::test {

/// A timer that ticks when it is told to.
class HandDrivenTimer final : public Timer {
public:
    void setInterval(std::int32_t milliseconds) override { interval_ = milliseconds; }
    [[nodiscard]] std::int32_t interval() const override { return interval_; }
    void setEnabled(bool enabled) override { enabled_ = enabled; }
    [[nodiscard]] bool isEnabled() const override { return enabled_; }
    /// False when it is not enabled: then nothing happens.
    bool tickNow() const {
        if (enabled_) tick();
        return enabled_;
    }

private:
    std::int32_t interval_ = 0;
    bool enabled_ = false;
};

/// Timers that are known by their names.
class HandDrivenTimers final : public Timers {
public:
    std::unique_ptr<Timer> create(const std::string& name) override {
        auto made = std::make_unique<HandDrivenTimer>();
        made_[name] = made.get();
        return made;
    }
    [[nodiscard]] HandDrivenTimer& operator[](const std::string& name) { return *made_.at(name); }

private:
    std::map<std::string, HandDrivenTimer*> made_;
};

}  // namespace vantrell::test
