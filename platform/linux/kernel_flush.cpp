// SPDX-License-Identifier: MIT
#include "platform/linux/kernel_flush.h"

#include <liburing.h>
#include <linux/aio_abi.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/files/unique_fd.h"

namespace vantrell {

namespace {

// A folder's names are not its data on every file system, so that for folders everything is flushed.
bool isFolder(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

int blockingFlush(int descriptor) {
    const int answer = isFolder(descriptor) ? ::fsync(descriptor) : ::fdatasync(descriptor);
    return answer == 0 ? 0 : errno;
}

class BlockingFlush final : public FlushService {
public:
    void start(RunQueue& queue, Ticket<int> ticket, NativeFile file) override {
        queue.wake(ticket, blockingFlush(static_cast<int>(file)));
    }
    [[nodiscard]] NativeFile completionHandle() const override { return -1; }
    void collect(RunQueue&) override {}
};

constexpr unsigned kMostUnderWay = 64;

void drainCounter(int descriptor) {
    eventfd_t count = 0;
    ::eventfd_read(descriptor, &count);
}

class UringFlush final : public FlushService {
public:
    UringFlush(io_uring ring, UniqueFd completed) : ring_(ring), completed_(std::move(completed)) {}
    UringFlush(const UringFlush&) = delete;
    UringFlush& operator=(const UringFlush&) = delete;
    ~UringFlush() override { io_uring_queue_exit(&ring_); }

    void start(RunQueue& queue, Ticket<int> ticket, NativeFile file) override {
        io_uring_sqe* entry = io_uring_get_sqe(&ring_);
        if (entry == nullptr) return queue.wake(ticket, blockingFlush(static_cast<int>(file)));
        const int descriptor = static_cast<int>(file);
        io_uring_prep_fsync(entry, descriptor, isFolder(descriptor) ? 0 : IORING_FSYNC_DATASYNC);
        // Without this flag the flush may be tried within the submission, which would hold up the event loop.
        io_uring_sqe_set_flags(entry, IOSQE_ASYNC);
        io_uring_sqe_set_data64(entry, ticket.number);
        const int submitted = io_uring_submit(&ring_);
        if (submitted < 0) queue.wake(ticket, -submitted);
    }
    [[nodiscard]] NativeFile completionHandle() const override { return completed_.get(); }
    void collect(RunQueue& queue) override {
        drainCounter(completed_.get());
        io_uring_cqe* done = nullptr;
        while (io_uring_peek_cqe(&ring_, &done) == 0) {
            queue.wake(Ticket<int>{io_uring_cqe_get_data64(done)}, done->res < 0 ? -done->res : 0);
            io_uring_cqe_seen(&ring_, done);
        }
    }

private:
    io_uring ring_;
    UniqueFd completed_;
};

class AioFlush final : public FlushService {
public:
    AioFlush(aio_context_t context, UniqueFd completed) : context_(context), completed_(std::move(completed)) {}
    AioFlush(const AioFlush&) = delete;
    AioFlush& operator=(const AioFlush&) = delete;
    ~AioFlush() override { ::syscall(SYS_io_destroy, context_); }

    void start(RunQueue& queue, Ticket<int> ticket, NativeFile file) override {
        iocb request{};
        request.aio_fildes = static_cast<__u32>(file);
        request.aio_lio_opcode = isFolder(static_cast<int>(file)) ? IOCB_CMD_FSYNC : IOCB_CMD_FDSYNC;
        request.aio_data = ticket.number;
        request.aio_flags = IOCB_FLAG_RESFD;
        request.aio_resfd = static_cast<__u32>(completed_.get());
        iocb* requests = &request;
        if (::syscall(SYS_io_submit, context_, 1, &requests) != 1)
            queue.wake(ticket, blockingFlush(static_cast<int>(file)));
    }
    [[nodiscard]] NativeFile completionHandle() const override { return completed_.get(); }
    void collect(RunQueue& queue) override {
        drainCounter(completed_.get());
        std::array<io_event, kMostUnderWay> events{};
        timespec noWait{};
        long count = 0;
        while ((count = ::syscall(SYS_io_getevents, context_, 0, events.size(), events.data(), &noWait)) > 0) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
                queue.wake(Ticket<int>{events[i].data}, events[i].res < 0 ? static_cast<int>(-events[i].res) : 0);
        }
    }

private:
    aio_context_t context_;
    UniqueFd completed_;
};

}  // namespace

std::unique_ptr<FlushService> makeUringFlush() {
    io_uring ring{};
    if (io_uring_queue_init(kMostUnderWay, &ring, 0) != 0) return nullptr;
    UniqueFd completed(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!completed || io_uring_register_eventfd(&ring, completed.get()) != 0) {
        io_uring_queue_exit(&ring);
        return nullptr;
    }
    return std::make_unique<UringFlush>(ring, std::move(completed));
}

std::unique_ptr<FlushService> makeAioFlush() {
    aio_context_t context = 0;
    if (::syscall(SYS_io_setup, kMostUnderWay, &context) != 0) return nullptr;
    UniqueFd completed(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!completed) {
        ::syscall(SYS_io_destroy, context);
        return nullptr;
    }
    return std::make_unique<AioFlush>(context, std::move(completed));
}

std::unique_ptr<FlushService> makeBlockingFlush() { return std::make_unique<BlockingFlush>(); }

std::unique_ptr<FlushService> makeKernelFlush() {
    if (auto uring = makeUringFlush()) return uring;
    if (auto aio = makeAioFlush()) return aio;
    return makeBlockingFlush();
}

}  // namespace vantrell
