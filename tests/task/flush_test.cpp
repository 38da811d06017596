// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <cerrno>

#include "platform/linux/kernel_flush.h"
#include "platform/linux/linux_fd.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {
namespace {

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

using MakeFlush = std::unique_ptr<FlushService> (*)(RunQueue&);
class KernelFlush : public testing::TestWithParam<MakeFlush> {};
INSTANTIATE_TEST_SUITE_P(Kinds, KernelFlush, testing::Values(makeBlockingFlush, makeUringFlush, makeAioFlush));

TEST_P(KernelFlush, ReportsSuccessAndErrors) {
    const TemporaryFolder folder;
    RunQueue queue([] {}, [] { return std::chrono::nanoseconds(0); });
    const auto service = GetParam()(queue);
    if (!service) GTEST_SKIP() << "this kernel forbids it";
    const LinuxFd file(::open((folder / "f").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    ASSERT_TRUE(file);
    ASSERT_EQ(::write(file.get(), "abc", 3), 3);
    for (int i = 0; i < 200; ++i) ASSERT_EQ(flushAndWait(*service, queue, file.get()), 0);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const LinuxFd in(ends[0]);
    const LinuxFd out(ends[1]);
    EXPECT_EQ(flushAndWait(*service, queue, out.get()), EINVAL) << "a pipe cannot be flushed, and that is reported";
}

}  // namespace
}  // namespace vantrell::test
