// SPDX-License-Identifier: MIT
#include "transport/passes.h"

namespace vantrell {

void Passes::stop() {
    if (pass_.isInProgress()) return pass_.requestStop();
    if (tasks_.isIdle()) return;
    tasks_.abort();
    pass_.passWasAborted();
}

}  // namespace vantrell
