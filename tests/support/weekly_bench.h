// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "support/pass_bench.h"

namespace vantrell::test {

inline void setSchedule(SettingsRecord& settings, int day, int hour, int minute, const char* half, int daysOld) {
    settings.WeeklyDeleteDay = static_cast<std::int16_t>(day);
    settings.WeeklyDeleteHour = static_cast<std::int16_t>(hour);
    settings.WeeklyDeleteMinute = static_cast<std::int16_t>(minute);
    settings.WeeklyDeleteAmPm = half;
    settings.WeeklyDeleteDaysOld = static_cast<std::int16_t>(daysOld);
}

/// A weekly delete over the engine's bench, on Monday at 7:05 PM and after 7 days unless a test says otherwise.
class WeeklyBench {
public:
    WeeklyBench() {
        startAnew(bench.toolbox);
        setSchedule(settings(), 1, 7, 5, "PM", 7);
    }

    /// As when the program is started again, on the given toolbox.
    void startAnew(FileToolbox& toolbox) {
        weekly.emplace(WeeklyDeleteParts{bench.state, bench.window, bench.engine.report, toolbox, bench.loop,
                                         bench.clock, bench.engine.mode, timDelete, bench.engine.mounts});
    }
    SettingsRecord& settings() { return bench.state.settings; }
    /// One tick of the clock timer, and of the deletion timer when it is armed; True when a deletion ran to its end.
    bool tick() {
        weekly->clockTick();
        if (!timDelete.isEnabled()) return false;
        weekly->timDelete_Timer();
        return finish();
    }
    bool deleteByHand() {
        weekly->mnDeleteDone();
        return finish();
    }
    bool finish() {
        return bench.loop.turnUntil([this] { return weekly->isIdle(); });
    }

    PassBench bench;
    HandDrivenTimer timDelete;
    std::optional<WeeklyDelete> weekly;
};

}  // namespace vantrell::test
