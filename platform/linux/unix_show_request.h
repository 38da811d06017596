// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/linux/linux_fd.h"
#include "platform/linux/linux_kernel.h"
#include "platform/show_request.h"

namespace vantrell {

/// Asks over the socket show.sock in the data folder.
class UnixShowRequest final : public ShowRequest {
public:
    explicit UnixShowRequest(const Path& folder);

    Answer answer() override;

private:
    Answer send();
    Answer hear();

    LinuxKernel kernel_;
    UniqueFd folder_;
    LinuxFd socket_;
    Answer answer_ = Answer::pending;
    bool isSent_ = false;
    std::string heard_;
};

/// Whether somebody listens there now: connects and hangs up.
[[nodiscard]] bool someoneListensIn(const Path& folder);

}  // namespace vantrell
