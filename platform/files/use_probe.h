// SPDX-License-Identifier: MIT
#pragma once

#include "platform/files/quiet_time.h"
#include "platform/files/unique_fd.h"

namespace vantrell {

enum class Use { none, writing, unknown };

/// Asks the system whether anyone has the file open for writing, with a read lease that is given back at once (one that
/// is kept would hold up writers). `unknown` when the system does not say: another owner's file, or a file system
/// without leases.
[[nodiscard]] Use askForWriters(const UniqueFd& file);
/// Whether this descriptor, which is open for writing, is the only one that anybody has of the file.
[[nodiscard]] bool isOnlyDescriptor(const UniqueFd& file);

/// Tells whether a file is in use.
class UseProbe {
public:
    explicit UseProbe(QuietTime& quietTime) : quietTime_(quietTime) {}

    /// Looks at an open file, of which `stamp` is what it is now. A look at a file of which the system does not say who
    /// has it open is remembered for the next one.
    [[nodiscard]] bool findInUse(const UniqueFd& file, const FileStamp& stamp);

private:
    QuietTime& quietTime_;
};

}  // namespace vantrell
