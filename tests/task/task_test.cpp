// SPDX-License-Identifier: MIT
#include "task/task.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/kernel_flush.h"
#include "platform/linux/linux_fd.h"
#include "rig/hand_cranked_loop.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {
namespace {

using Words = std::vector<std::string>;

struct Says {
    Words& words;
    std::string goodbye;
    ~Says() { words.push_back(goodbye); }
};

Task<int> inner(EventLoop& loop, Words& words) {
    const Says says{words, "inner gone"};
    co_await loop.after(std::chrono::seconds(1));
    words.push_back("inner went on");
    co_return 7;
}

Task<void> outer(EventLoop& loop, Words& words) {
    const Says says{words, "outer gone"};
    if (co_await inner(loop, words) == 7) words.push_back("outer got it");
}

TEST(Task, GoesOnInTheTurnAfterItIsWokenAndAnAbortOnlyRunsDestructors) {
    const std::pair<bool, Words> ends[] = {{false, {"inner went on", "inner gone", "outer got it", "outer gone"}},
                                           {true, {"inner gone", "outer gone"}}};
    for (const auto& [isAborted, end] : ends) {
        HandCrankedLoop loop;
        Words words;
        TaskGroup group(loop.queue());
        group.start(outer(loop, words));
        EXPECT_FALSE(loop.waitsForTime());
        loop.turn();
        EXPECT_TRUE(loop.waitsForTime());
        if (isAborted) group.abort();
        loop.advance(std::chrono::seconds(1));
        EXPECT_EQ(words.empty(), !isAborted) << "waking must not run the task by itself";
        EXPECT_EQ(loop.turn(), !isAborted);
        EXPECT_EQ(words, end);
        EXPECT_TRUE(group.isIdle());
    }
}

Task<void> waits(std::optional<Pending<>>& begun, Words& words) {
    co_await *begun;
    words.push_back("went on");
}

// A flush that is under way when its task is aborted goes to whoever drops the file, and completes later.
TEST(Task, IsNotRunAgainByWhatOthersHaveTakenOver) {
    HandCrankedLoop loop;
    Words words;
    std::optional<Pending<>> begun(std::in_place, loop.queue(), [](Ticket<>) {});
    TaskGroup group(loop.queue());
    group.start(waits(begun, words));
    loop.turn();
    std::optional<Pending<>> taken(std::move(*begun));
    loop.queue().wake(taken->ticket());
    loop.turn();
    EXPECT_TRUE(words.empty());
    group.abort();
    group.start(waits(taken, words));
    loop.turn();
    EXPECT_EQ(words, Words{"went on"});
}

Task<std::string> takesOver(std::shared_ptr<int> given) { co_return std::to_string(*given); }

Task<void> keepsTheTask(std::shared_ptr<int> given, Words& words) {
    Task<std::string> child = takesOver(given);
    words.push_back(co_await child);
    words.push_back(std::to_string(given.use_count()));
}

// A parameter may hold a file open.
TEST(Task, LetsGoOfItsParametersAtItsEnd) {
    HandCrankedLoop loop;
    Words words;
    const auto given = std::make_shared<int>(7);
    TaskGroup group(loop.queue());
    group.start(keepsTheTask(given, words));
    loop.turn();
    EXPECT_EQ(words, (Words{"7", "2"}));
    EXPECT_EQ(given.use_count(), 1);
}

int flushAndWait(FlushService& service, RunQueue& queue, int descriptor) {
    const Ticket<int> ticket{queue.enlist()};
    service.start(ticket, descriptor);
    while (!queue.isWoken(ticket.number)) {
        pollfd readable{static_cast<int>(service.handle()), POLLIN, 0};
        if (::poll(&readable, 1, 10000) <= 0) return ETIMEDOUT;
        service.serve();
    }
    return queue.valueOf(ticket);
}

TEST(KernelFlush, ReportsSuccessAndErrors) {
    const TemporaryFolder folder;
    const LinuxFd file(::open((folder / "f").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ASSERT_EQ(::write(file.get(), "abc", 3), 3);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const LinuxFd in(ends[0]);
    const LinuxFd out(ends[1]);
    for (const auto make : {makeBlockingFlush, makeUringFlush, makeAioFlush}) {
        RunQueue queue([] {}, [] { return std::chrono::nanoseconds(0); });
        const auto service = make(queue);
        EXPECT_TRUE(service || make != makeBlockingFlush);
        if (!service) continue;  // this kernel forbids it
        for (int i = 0; i < 200; ++i) ASSERT_EQ(flushAndWait(*service, queue, file.get()), 0);
        EXPECT_EQ(flushAndWait(*service, queue, out.get()), EINVAL) << "a pipe cannot be flushed, which is reported";
    }
}

}  // namespace
}  // namespace vantrell::test
