// SPDX-License-Identifier: MIT
#pragma once

#include "core/ending.h"
#include "task/task_group.h"
#include "transport/scan_pass.h"

namespace vantrell {

/// The passes of the program, one at a time.
class Passes final : public Endable {
public:
    /// Both outlive it.
    Passes(ScanPass& pass, RunQueue& queue) : pass_(pass), tasks_(queue) {}

    /// Begins a pass, unless one is under way.
    void timRun_Timer() {
        if (tasks_.isIdle()) tasks_.start(run());
    }
    /// The operator wants passes from now on: one full pass, or one after the other.
    void takeStart(bool once) { pass_.takeStart(once); }
    /// The pass under way ends before its next file. One that has not begun to search yet has nothing to finish and is
    /// dropped. Not to be called from within a pass.
    void stop();
    void abort() override { tasks_.abort(); }

private:
    Task<void> run();

    ScanPass& pass_;
    TaskGroup tasks_;
};

}  // namespace vantrell
