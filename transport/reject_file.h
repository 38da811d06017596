// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/file_toolbox.h"
#include "transport/file_report.h"

namespace vantrell {

/// One file that could not be encrypted. What is referred to outlives the task.
struct RejectOrder {
    FileToolbox& toolbox;
    FileReport& report;
    const Clock& clock;
    Path file;
    Path folder;
    HeldFile* held;  ///< as it was read; null when it could not be opened
};

/// Moves the file into the rejected folder, under a dated name where its own is taken there, and never replaces. Where
/// the folder does not take a name of this length, the name loses its middle. After a fault the file is where it was.
Task<Result<>> rejectFile(RejectOrder order);

}  // namespace vantrell
