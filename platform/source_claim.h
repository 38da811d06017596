// SPDX-License-Identifier: MIT
#pragma once

#include "base/path.h"

namespace vantrell {

/// By this, programs of different data folders and users on this machine learn that one of them is processing a Source
/// folder already. Two of them would encrypt its files with two passwords, and nobody could tell which with which.
/// At most one folder is claimed; the claim ends with the process, however that ends, and keeps no disk busy.
class SourceClaim {
public:
    SourceClaim() = default;
    SourceClaim(const SourceClaim&) = delete;
    SourceClaim& operator=(const SourceClaim&) = delete;
    virtual ~SourceClaim() = default;

    enum class Outcome {
        held,       ///< it is ours, perhaps since an earlier call
        anothers,   ///< another program has claimed it
        impossible  ///< this machine has nothing to claim by
    };
    /// Claims the folder, whatever its path is. A claim on any other folder is released.
    virtual Outcome claim(const Path& folder) = 0;
    /// Does nothing when nothing is claimed.
    virtual void release() = 0;
};

}  // namespace vantrell
