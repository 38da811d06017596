// SPDX-License-Identifier: MIT
#include "transport/passes.h"

namespace vantrell {

// What the pass had at work is as after an abort, since its destructors have run.
Task<void> Passes::run() {
    try {
        co_await pass_.timRun_Timer();
    } catch (...) {
        pass_.passHasFailed();
        throw;
    }
}

void Passes::stop() {
    if (pass_.isInProgress()) return pass_.requestStop();
    if (tasks_.isIdle()) return;
    tasks_.abort();
    pass_.passWasAborted();
}

}  // namespace vantrell
