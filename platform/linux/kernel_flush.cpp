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

#include "platform/linux/linux_fd.h"

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
    explicit BlockingFlush(RunQueue& queue) : queue_(queue) {}

    void start(Ticket<int> ticket, int file) override { queue_.wake(ticket, blockingFlush(file)); }
    [[nodiscard]] Handle handle() const override { return kNothing; }
    void serve() override {}

private:
    RunQueue& queue_;
};

constexpr unsigned kMostUnderWay = 64;

void drainCounter(int descriptor) {
    eventfd_t count = 0;
    ::eventfd_read(descriptor, &count);
}

class UringFlush final : public FlushService {
public:
    UringFlush(RunQueue& queue, io_uring ring, LinuxFd completed)
        : queue_(queue), ring_(ring), completed_(std::move(completed)) {}
    UringFlush(const UringFlush&) = delete;
    UringFlush& operator=(const UringFlush&) = delete;
    ~UringFlush() override { io_uring_queue_exit(&ring_); }

    void start(Ticket<int> ticket, int file) override {
        io_uring_sqe* entry = io_uring_get_sqe(&ring_);
        if (entry == nullptr) return queue_.wake(ticket, blockingFlush(file));
        io_uring_prep_fsync(entry, file, isFolder(file) ? 0 : IORING_FSYNC_DATASYNC);
        // Without this flag the flush may be tried within the submission, which would hold up the event loop.
        io_uring_sqe_set_flags(entry, IOSQE_ASYNC);
        io_uring_sqe_set_data64(entry, ticket.number);
        const int submitted = io_uring_submit(&ring_);
        if (submitted < 0) queue_.wake(ticket, -submitted);
    }
    [[nodiscard]] Handle handle() const override { return completed_.get(); }
    void serve() override {
        drainCounter(completed_.get());
        io_uring_cqe* done = nullptr;
        while (io_uring_peek_cqe(&ring_, &done) == 0) {
            queue_.wake(Ticket<int>{io_uring_cqe_get_data64(done)}, done->res < 0 ? -done->res : 0);
            io_uring_cqe_seen(&ring_, done);
        }
    }

private:
    RunQueue& queue_;
    io_uring ring_;
    LinuxFd completed_;
};

class AioFlush final : public FlushService {
public:
    AioFlush(RunQueue& queue, aio_context_t context, LinuxFd completed)
        : queue_(queue), context_(context), completed_(std::move(completed)) {}
    AioFlush(const AioFlush&) = delete;
    AioFlush& operator=(const AioFlush&) = delete;
    ~AioFlush() override { ::syscall(SYS_io_destroy, context_); }

    void start(Ticket<int> ticket, int file) override {
        iocb request{};
        request.aio_fildes = static_cast<__u32>(file);
        request.aio_lio_opcode = isFolder(file) ? IOCB_CMD_FSYNC : IOCB_CMD_FDSYNC;
        request.aio_data = ticket.number;
        request.aio_flags = IOCB_FLAG_RESFD;
        request.aio_resfd = static_cast<__u32>(completed_.get());
        iocb* requests = &request;
        if (::syscall(SYS_io_submit, context_, 1, &requests) != 1) queue_.wake(ticket, blockingFlush(file));
    }
    [[nodiscard]] Handle handle() const override { return completed_.get(); }
    void serve() override {
        drainCounter(completed_.get());
        std::array<io_event, kMostUnderWay> events{};
        timespec noWait{};
        long count = 0;
        while ((count = ::syscall(SYS_io_getevents, context_, 0, events.size(), events.data(), &noWait)) > 0) {
            for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i)
                queue_.wake(Ticket<int>{events[i].data}, events[i].res < 0 ? static_cast<int>(-events[i].res) : 0);
        }
    }

private:
    RunQueue& queue_;
    aio_context_t context_;
    LinuxFd completed_;
};

}  // namespace

std::unique_ptr<FlushService> makeUringFlush(RunQueue& queue) {
    io_uring ring{};
    if (io_uring_queue_init(kMostUnderWay, &ring, 0) != 0) return nullptr;
    LinuxFd completed(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!completed || io_uring_register_eventfd(&ring, completed.get()) != 0) {
        io_uring_queue_exit(&ring);
        return nullptr;
    }
    return std::make_unique<UringFlush>(queue, ring, std::move(completed));
}

std::unique_ptr<FlushService> makeAioFlush(RunQueue& queue) {
    aio_context_t context = 0;
    if (::syscall(SYS_io_setup, kMostUnderWay, &context) != 0) return nullptr;
    LinuxFd completed(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (!completed) {
        ::syscall(SYS_io_destroy, context);
        return nullptr;
    }
    return std::make_unique<AioFlush>(queue, context, std::move(completed));
}

std::unique_ptr<FlushService> makeBlockingFlush(RunQueue& queue) { return std::make_unique<BlockingFlush>(queue); }

std::unique_ptr<FlushService> makeKernelFlush(RunQueue& queue) {
    if (auto uring = makeUringFlush(queue)) return uring;
    if (auto aio = makeAioFlush(queue)) return aio;
    return makeBlockingFlush(queue);
}

}  // namespace vantrell
