// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/output_parts.h"

namespace vantrell {

/// Brings the names in a folder and in all folders below it to stable storage. Links are not followed. Folders that
/// may not be read are passed over: nothing of ours can be in them. The first fault ends it.
Task<Result<>> flushTree(OutputParts& parts, Path folder);

}  // namespace vantrell
