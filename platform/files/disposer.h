// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <optional>

#include "platform/event_loop.h"
#include "platform/files/unique_fd.h"
#include "task/task_group.h"

namespace vantrell {

/// A file that is larger takes long to drop all at once.
inline constexpr off_t kDropStep = off_t{64} << 20U;

/// Shrinks an open file that has no name any more, in steps that do not hold up the event loop. A file that still has
/// a name is left alone. It stays open until the task has ended.
Task<void> shrink(EventLoop& loop, const UniqueFd& file);

/// Lets go of large files that nobody waits for: dropping one all at once holds up the event loop (0.16 s a GiB). To
/// be destroyed after everything that hands files to it; what is left then is dropped at once.
class Disposer {
public:
    explicit Disposer(EventLoop& loop) : loop_(loop), tasks_(loop.queue()) {}

    /// `flush` is one that is still under way for the file, and is waited for first.
    void dispose(UniqueFd file, std::optional<Pending<int>> flush = {});
    /// For a file that was another's until it lost its name, and that is open for writing: it is shrunk when nobody
    /// else has it open, so that nobody reads less than there was.
    void disposeWhenUnused(UniqueFd file);

private:
    EventLoop& loop_;
    TaskGroup tasks_;
};

}  // namespace vantrell
