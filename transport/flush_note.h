// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "platform/data_files.h"

namespace vantrell {

/// Remembers, in a file of the data folder, that bringing something to stable storage has failed. After such a failure
/// the system may say of what it has dropped that it is on the disk (fsync(2), ERRORS). So while the note stands,
/// nothing that seems to stand already is believed, and it is made anew.
class FlushNote {
public:
    /// `files` outlives it.
    FlushNote(DataFiles& files, Path file) : files_(files), file_(std::move(file)) {}

    /// A flush has failed just now.
    void write();
    [[nodiscard]] bool stands();
    /// A pass has carried everything that there was, and no flush has failed.
    void clear();
    /// How many flushes have failed since the start of the program.
    [[nodiscard]] unsigned failures() const { return failures_; }

private:
    DataFiles& files_;
    const Path file_;
    std::optional<bool> stands_;  ///< not known before it was looked for
    bool isWritten_ = false;
    unsigned failures_ = 0;
};

inline constexpr char kFlushNoteName[] = "Failed Flush.note";

}  // namespace vantrell
