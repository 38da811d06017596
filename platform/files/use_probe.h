// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"
#include "platform/files/file_system.h"
#include "platform/files/quiet_time.h"
#include "platform/files/unique_fd.h"
#include "platform/files/watched_time.h"

namespace vantrell {

enum class Use { none, writing, unknown };

/// Asks the system whether anyone has the file open for writing, with a read lease that is given back at once (one that
/// is kept would hold up writers). `unknown` when the system does not say: another owner's file, or a file system
/// without leases.
[[nodiscard]] Use askForWriters(const UniqueFd& file);
/// The same of a file that was asked about before.
[[nodiscard]] Use askForWritersAgain(const UniqueFd& file);
/// Whether this descriptor, which is open for writing, is the only one that anybody has of the file.
[[nodiscard]] bool isOnlyDescriptor(const UniqueFd& file);

/// What stands under a name in the folder (links not followed), or with an empty name the open file itself. Where
/// another machine may have written, the server is asked. 0 or the error number.
[[nodiscard]] int statusNow(const UniqueFd& file, const char* name, bool asksServer, struct stat& into);

/// What is known of a file that was just opened.
struct Readiness {
    enum class State {
        free,     ///< nobody writes to it, and whoever does from now on will be noticed by its stamp
        inUse,    ///< somebody writes to it
        unknown,  ///< it can be known after `wait`, by opening it anew
    };
    State state = State::free;
    std::chrono::nanoseconds wait{0};
};

/// Tells whether a file is in use.
class UseProbe {
public:
    /// All of it outlives the probe.
    UseProbe(const Clock& clock, FileSystems& systems)
        : clock_(clock), systems_(systems), quiet_(clock), watched_(clock) {}

    /// Looks at a file that was opened just now, of which `stamp` is what it is.
    [[nodiscard]] Readiness look(const UniqueFd& file, const FileStamp& stamp);
    /// A first look, at a file in the folder that will be opened later: by then time has passed. Does nothing where the
    /// system tells of writers.
    void lookAhead(const UniqueFd& folder, const char* name);
    /// Whether somebody is known to write to an open file.
    [[nodiscard]] bool isKnownToBeWritten(const UniqueFd& file);
    [[nodiscard]] bool isLocal(const UniqueFd& file) { return systems_.of(file).isLocal; }
    [[nodiscard]] bool isLocal(const UniqueFd& file, dev_t device) { return systems_.of(file, device).isLocal; }
    /// As QuietTime's.
    void carryOver(const FileStamp& before, const FileStamp& after) { quiet_.carryOver(before, after); }
    void forgetSettled() { quiet_.forgetSettled(); }

private:
    [[nodiscard]] Readiness afterTwoLooks(const FileStamp& stamp, const FileSystemFacts& facts);
    [[nodiscard]] Readiness afterRest(const FileStamp& stamp, const FileSystemFacts& facts,
                                      std::chrono::nanoseconds rest, std::chrono::nanoseconds oldest);

    const Clock& clock_;
    FileSystems& systems_;
    QuietTime quiet_;
    WatchedTime watched_;
};

}  // namespace vantrell
