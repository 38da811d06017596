// SPDX-License-Identifier: MIT
#pragma once

#include "activitylog/status_report.h"
#include "platform/clock.h"
#include "platform/file_toolbox.h"

namespace vantrell {

/// One file that could not be encrypted. What is referred to outlives the task.
struct RejectOrder {
    FileToolbox& toolbox;
    StatusReport& report;
    const Clock& clock;
    Path file;
    Path folder;
    HeldFile* held;  ///< as it was read; null when it could not be opened
};

/// Moves the file into the rejected folder, under a dated name where its own is taken there, and never replaces. After
/// a fault the file is where it was.
Task<Result<>> rejectFile(RejectOrder order);

}  // namespace vantrell
