// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <set>
#include <vector>

#include "platform/event_loop.h"
#include "platform/files/disposer.h"
#include "platform/files/file_stamp.h"
#include "platform/files/file_system.h"
#include "platform/files/nameless_support.h"
#include "platform/files/source_tree.h"
#include "platform/files/target_folders.h"

namespace vantrell {

class PosixOutputFile;

/// What all new files and moves of a toolbox share; outlives them.
struct OutputParts {
    EventLoop& loop;
    Kernel& kernel;
    Disposer& disposer;
    NamelessSupport nameless;
    FileSystems systems{};
    SourceTree source{};
    /// Holds nothing: for what does not belong to Source.
    SourceTree elsewhere{};
    TargetFolders targets{};
    /// What was published and moved in the pass under way.
    std::set<FileIdentity> made{};
    /// New files whose free names are not on the disk yet.
    std::vector<PosixOutputFile*> named{};
    /// To be told of every flush that has failed. May be empty.
    std::function<void()> flushHasFailed{};
    /// Bytes written to all new files together for which no flush has been submitted yet.
    std::uint64_t unflushed = 0;

    /// Every flush of a file ends here, with 0 or the error number: what failed is told before anything else happens.
    int flushed(int error) const {
        if (error != 0 && flushHasFailed) flushHasFailed();
        return error;
    }
};

}  // namespace vantrell
