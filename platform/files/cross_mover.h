// SPDX-License-Identifier: MIT
#pragma once

#include "platform/file_toolbox.h"
#include "platform/files/held_file.h"
#include "platform/files/output_file.h"
#include "platform/files/place.h"
#include "platform/files/private_folder.h"

namespace vantrell {

/// Brings one file to another file system: a copy is published and on stable storage before the source is touched.
class CrossMover {
public:
    /// Everything outlives the mover.
    CrossMover(OutputParts& parts, UseProbe& probe, const Place& from, const Place& to)
        : parts_(parts), probe_(probe), from_(from), to_(to) {}

    /// `source`: which file the order is about.
    Task<Result<>> move(MoveOrder order, FileIdentity source);

private:
    class PublishedCopy;

    Task<Result<>> makeCopy(PosixHeldFile& original, PosixOutputFile& copy);
    Task<Result<>> publish(const MoveOrder& order, PosixOutputFile& output, PublishedCopy& copy);
    Result<> removeSource(PrivateFolder& aside, const PosixHeldFile& original);

    OutputParts& parts_;
    UseProbe& probe_;
    const Place& from_;
    const Place& to_;
    UniqueFd removed_;  ///< the removed source while it is large and still to be dropped
};

}  // namespace vantrell
