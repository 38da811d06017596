// SPDX-License-Identifier: MIT
#pragma once

#include "platform/host.h"

namespace vantrell {

/// Starts the program with which the desktop shows what the machine is. False when there is none.
bool startSystemInformation(Host& host);

}  // namespace vantrell
