// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/event_source.h"
#include "task/run_queue.h"

namespace vantrell {

/// Flushing of open files that goes on while the event loop runs. As an event source it is signalled when flushes have
/// completed, and `serve` wakes those who wait for them.
class FlushService : public EventSource {
public:
    /// The ticket's queue is the one that the service was made with. It is woken with 0 or the error number, at once or
    /// from `serve`. The file may be closed as soon as this returns.
    virtual void start(Ticket<int> ticket, int file) = 0;
};

/// The best flushing that this kernel allows: io_uring, else kernel aio (both may be forbidden, as in many
/// containers), else a blocking fdatasync. The queue outlives the service.
std::unique_ptr<FlushService> makeKernelFlush(RunQueue& queue);

// The single kinds, for tests; the first two are null where the kernel does not allow them.
std::unique_ptr<FlushService> makeUringFlush(RunQueue& queue);
std::unique_ptr<FlushService> makeAioFlush(RunQueue& queue);
std::unique_ptr<FlushService> makeBlockingFlush(RunQueue& queue);

}  // namespace vantrell
