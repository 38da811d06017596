// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/flush_service.h"

namespace vantrell {

/// The best flushing that this kernel allows: io_uring, else kernel aio (both may be forbidden, as in many
/// containers), else a blocking fdatasync.
std::unique_ptr<FlushService> makeKernelFlush();

// The single kinds, for tests; the first two are null where the kernel does not allow them.
std::unique_ptr<FlushService> makeUringFlush();
std::unique_ptr<FlushService> makeAioFlush();
std::unique_ptr<FlushService> makeBlockingFlush();

}  // namespace vantrell
