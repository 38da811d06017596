// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <deque>
#include <string>

#include "platform/files/unique_fd.h"
#include "platform/show_request.h"

namespace vantrell {

/// Listens on the socket show.sock (0600) in the data folder and answers its own user's processes only. Who says
/// anything but the request is hung up on; who says nothing has to go when others come. Nothing here ever waits.
class UnixShowListener final : public ShowRequestListener {
public:
    UnixShowListener() = default;
    /// Takes the socket away.
    ~UnixShowListener() override;

    bool listen(const Path& folder, std::function<void()> show) override;

    /// Readable when `serve` has something to do; -1 while nothing is listened to.
    [[nodiscard]] int descriptor() const { return events_.get(); }
    /// Accepts and answers callers that wait now, a limited number of them, and never waits itself.
    void serve();

private:
    struct Connection {
        UniqueFd socket;
        std::string heard;
    };

    bool openSocket();
    bool watch(int descriptor) const;
    void acceptSome();
    void hangUpOnWhoCannotBeTaken(int error);
    void makeRoom();
    /// Reads what has come and answers it. True when the connection is no longer needed.
    bool answerWhatCame(Connection& connection);
    [[nodiscard]] bool socketIsOurs() const;

    std::function<void()> show_;
    UniqueFd folder_;
    UniqueFd socket_;
    UniqueFd events_;
    UniqueFd spare_;
    ino_t inode_ = 0;
    std::deque<Connection> connections_;  // the oldest first
};

}  // namespace vantrell
