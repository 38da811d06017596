// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/held_file.h"
#include "platform/files/output_file.h"

namespace vantrell {

/// Writes all of `from` into `to`; both outlive the task. Fault `inUse` when there are more or fewer bytes than when
/// the file was opened.
Task<Result<>> copyContents(HeldFile& from, OutputFile& to);

/// What FileToolbox::copy promises.
Task<Result<>> copyFile(OutputParts& parts, UseProbe& probe, Path source, Path target, unsigned permissions);

}  // namespace vantrell
