// SPDX-License-Identifier: MIT
#pragma once

#include "platform/event_loop.h"

namespace vantrell {

/// Flushing of files that goes on while the event loop runs.
class FlushService {
public:
    FlushService() = default;
    FlushService(const FlushService&) = delete;
    FlushService& operator=(const FlushService&) = delete;
    virtual ~FlushService() = default;

    /// Submits a flush of the file's data; `queue.wake(ticket, error)` follows, at once or from `collect`.
    virtual void start(RunQueue& queue, Ticket<int> ticket, NativeFile file) = 0;
    /// Becomes readable when flushes have completed; -1 when the service always completes at once.
    [[nodiscard]] virtual NativeFile completionHandle() const = 0;
    /// Wakes those whose flush has completed.
    virtual void collect(RunQueue& queue) = 0;
};

}  // namespace vantrell
