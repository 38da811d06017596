// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/file_toolbox.h"
#include "platform/files/output_parts.h"
#include "platform/files/use_probe.h"

namespace vantrell {

/// What FileToolbox::search promises. Parts and probe outlive the task.
Task<std::vector<Path>> searchFolder(OutputParts& parts, UseProbe& probe, SearchOrder order);

}  // namespace vantrell
