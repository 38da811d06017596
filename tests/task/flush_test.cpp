// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <cerrno>

#include "platform/files/unique_fd.h"
#include "platform/linux/kernel_flush.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {
namespace {

int flushAndWait(FlushService& service, RunQueue& queue, int descriptor) {
    const Ticket<int> ticket{queue.enlist()};
    service.start(queue, ticket, descriptor);
    while (!queue.isWoken(ticket.number)) {
        pollfd readable{static_cast<int>(service.completionHandle()), POLLIN, 0};
        if (::poll(&readable, 1, 10000) <= 0) return ETIMEDOUT;
        service.collect(queue);
    }
    return queue.valueOf(ticket);
}

void checkFlush(FlushService& service) {
    const TemporaryFolder folder;
    RunQueue queue([] {}, [] { return std::chrono::nanoseconds(0); });
    const UniqueFd file(::open((folder / "f").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ASSERT_TRUE(file);
    ASSERT_EQ(::write(file.get(), "abc", 3), 3);
    for (int i = 0; i < 200; ++i) ASSERT_EQ(flushAndWait(service, queue, file.get()), 0);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const UniqueFd in(ends[0]);
    const UniqueFd out(ends[1]);
    EXPECT_EQ(flushAndWait(service, queue, out.get()), EINVAL) << "a pipe cannot be flushed, and that is reported";
}

TEST(KernelFlush, BlockingFlushReportsSuccessAndErrors) { checkFlush(*makeBlockingFlush()); }

TEST(KernelFlush, UringFlushReportsSuccessAndErrors) {
    const auto service = makeUringFlush();
    if (!service) GTEST_SKIP() << "this kernel forbids io_uring";
    checkFlush(*service);
}

TEST(KernelFlush, AioFlushReportsSuccessAndErrors) {
    const auto service = makeAioFlush();
    if (!service) GTEST_SKIP() << "this kernel forbids aio";
    checkFlush(*service);
}

}  // namespace
}  // namespace vantrell::test
