// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <deque>
#include <string>

#include "platform/event_source.h"
#include "platform/linux/linux_fd.h"
#include "platform/linux/linux_kernel.h"
#include "platform/show_request.h"

namespace vantrell {

/// Listens on the socket show.sock (0600) in the data folder and answers its own user's processes only. Who says
/// anything but the request is hung up on; who says nothing has to go when others come. Nothing here ever waits.
class UnixShowListener final : public ShowRequestListener, public EventSource {
public:
    UnixShowListener() = default;
    UnixShowListener(const UnixShowListener&) = delete;
    UnixShowListener& operator=(const UnixShowListener&) = delete;
    /// Takes the socket away.
    ~UnixShowListener() override;

    bool listen(const Path& folder, std::function<void()> show) override;

    /// To be watched from a successful `listen` on.
    [[nodiscard]] Handle handle() const override { return events_ ? events_.get() : kNothing; }
    void serve() override;

private:
    struct Connection {
        LinuxFd socket;
        std::string heard;
    };

    bool openSocket();
    bool watch(int descriptor) const;
    void acceptSome();
    void hangUpOnNextCaller();
    void makeRoom();
    enum class Talk { goesOn, isOver };
    Talk hear(Connection& connection);
    [[nodiscard]] bool socketIsOurs() const;

    std::function<void()> show_;
    LinuxKernel kernel_;
    UniqueFd folder_;
    LinuxFd socket_;
    LinuxFd events_;
    LinuxFd spare_;
    ino_t inode_ = 0;
    std::deque<Connection> connections_;  // the oldest first
};

}  // namespace vantrell
