// SPDX-License-Identifier: MIT
#pragma once

#include <deque>
#include <memory>
#include <optional>

#include "platform/event_loop.h"
#include "task/task_group.h"
#include "transport/encrypt_file.h"

namespace vantrell {

/// Files that are prepared while those before them are finished: most of the time of a small file goes into waiting for
/// the disk, and several can wait together. What is prepared cannot be seen, and is dropped with this object.
class Lookahead {
public:
    struct Item {
        FileEncryption::WorkPointer work;
        std::size_t index = 0;  ///< in the list of the pass
    };

    Lookahead(EventLoop& loop, FileEncryption& encryption);
    Lookahead(const Lookahead&) = delete;
    Lookahead& operator=(const Lookahead&) = delete;

    [[nodiscard]] bool isEmpty() const { return slots_.empty(); }
    [[nodiscard]] bool hasRoom() const;
    /// Opens the file, and begins to prepare it when it is small.
    void add(EncryptOrder order, std::size_t index);
    /// The file that was added first, once its preparation has ended.
    Task<Item> next();
    /// The same without waiting: nothing when there is none, or it is not ready.
    std::optional<Item> readyOne();

private:
    struct Slot {
        Item item;
        bool isReady = false;
        Ticket<> waiter;
    };

    static Task<void> prepare(RunQueue& queue, FileEncryption& encryption, Slot& slot);

    EventLoop& loop_;
    FileEncryption& encryption_;
    std::deque<std::unique_ptr<Slot>> slots_;
    TaskGroup tasks_;  // below the slots: the tasks work on them
};

}  // namespace vantrell
