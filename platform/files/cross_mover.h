// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/held_file.h"
#include "platform/files/output_file.h"
#include "platform/files/place.h"
#include "platform/files/source_removal.h"

namespace vantrell {

/// Brings one file to where it can get no second name, as on another file system: a copy is published and on stable
/// storage before the source is touched.
class CrossMover {
public:
    /// Everything outlives the mover.
    CrossMover(OutputParts& parts, UseProbe& probe, const Place& from, const Place& to)
        : parts_(parts), probe_(probe), from_(from), to_(to) {}

    /// `source`: which file the order is about.
    Task<Result<>> move(MoveOrder order, FileIdentity source);

private:
    class PublishedCopy;

    Task<Result<>> copyAndPublish(MoveOrder order, PosixHeldFile& original, PublishedCopy& copy);
    Task<Result<>> makeCopy(PosixHeldFile& original, PosixOutputFile& output);
    Task<Result<>> publish(const MoveOrder& order, PosixOutputFile& output, PublishedCopy& copy);

    OutputParts& parts_;
    UseProbe& probe_;
    const Place& from_;
    const Place& to_;
};

}  // namespace vantrell
