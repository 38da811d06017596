// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/linux/linux_fd.h"
#include "platform/source_claim.h"

namespace vantrell {

/// Claims by an abstract socket (unix(7)) whose name is made of the folder's device and inode numbers. Nobody can
/// connect to it; it stands in no folder. It is seen within one network namespace.
class SocketClaim final : public SourceClaim {
public:
    Outcome claim(const Path& folder) override;
    void release() override;

private:
    LinuxFd socket_;
    std::string name_;  ///< of the socket; empty when there is none
};

}  // namespace vantrell
