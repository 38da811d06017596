// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include "platform/files/unique_fd.h"

namespace vantrell {

struct CloseDirectly {
    void operator()(int descriptor) const { ::close(descriptor); }
};

/// Owner of a descriptor that is no file's: sockets, events, signals.
using LinuxFd = DescriptorOwner<CloseDirectly>;

}  // namespace vantrell
