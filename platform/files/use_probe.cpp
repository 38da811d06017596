// SPDX-License-Identifier: MIT
#include "platform/files/use_probe.h"

#include <sys/sysmacros.h>

#include <algorithm>
#include <csignal>

namespace vantrell {

namespace {

// So long apart, two equal looks tell that nobody writes; on a network file system another machine may keep back for
// half a minute what it has written.
constexpr std::chrono::seconds kQuiet{5};
constexpr std::chrono::seconds kQuietOnNetworks{35};
// Where times are whole seconds, or two of them.
constexpr std::chrono::seconds kCoarseStep{2};

struct timespec timeOfDay(const statx_timestamp& time) {
    return {time.tv_sec, static_cast<long>(time.tv_nsec)};
}

std::chrono::nanoseconds sinceEpoch(const FileTime& time) {
    return std::chrono::seconds(time.seconds) + std::chrono::nanoseconds(time.nanoseconds);
}

// Whoever opens the file in the few microseconds of the lease makes the kernel send us this signal, which does nothing
// by default. SIGIO, which it sends otherwise, would end the process.
int chooseSignal(const UniqueFd& file) { return file.kernel().setLeaseSignal(file.get(), SIGURG); }

int tryLease(const UniqueFd& file, int kind) {
    Kernel& kernel = file.kernel();
    if (const int error = kernel.setLease(file.get(), kind); error != 0) return error;
    return kernel.setLease(file.get(), F_UNLCK);
}

Use meaningOf(int answer) {
    if (answer == 0) return Use::none;
    return answer == EAGAIN ? Use::writing : Use::unknown;
}

}  // namespace

Use askForWriters(const UniqueFd& file) {
    const int error = chooseSignal(file);
    return error == 0 ? askForWritersAgain(file) : meaningOf(error);
}

Use askForWritersAgain(const UniqueFd& file) { return meaningOf(tryLease(file, F_RDLCK)); }

bool isOnlyDescriptor(const UniqueFd& file) { return chooseSignal(file) == 0 && tryLease(file, F_WRLCK) == 0; }

int statusNow(const UniqueFd& file, const char* name, bool asksServer, struct stat& into) {
    const bool isItself = *name == '\0';
    if (!asksServer) return isItself ? file.status(into) : file.statusOf(name, into);
    const int flags = AT_STATX_FORCE_SYNC | AT_SYMLINK_NOFOLLOW | (isItself ? AT_EMPTY_PATH : 0);
    struct statx status {};
    const int error = file.kernel().statx(file.get(), name, flags, STATX_BASIC_STATS, status);
    // Some containers forbid the call.
    if (error == ENOSYS || error == EPERM) return statusNow(file, name, false, into);
    if (error != 0) return error;
    into = {};
    into.st_dev = makedev(status.stx_dev_major, status.stx_dev_minor);
    into.st_ino = status.stx_ino;
    into.st_mode = status.stx_mode;
    into.st_nlink = status.stx_nlink;
    into.st_uid = status.stx_uid;
    into.st_gid = status.stx_gid;
    into.st_size = static_cast<off_t>(status.stx_size);
    into.st_atim = timeOfDay(status.stx_atime);
    into.st_mtim = timeOfDay(status.stx_mtime);
    into.st_ctim = timeOfDay(status.stx_ctime);
    return 0;
}

bool UseProbe::isKnownToBeWritten(const UniqueFd& file) {
    // Elsewhere the writer may sit on another machine, and a lease says nothing.
    return isLocal(file) && askForWriters(file) == Use::writing;
}

void UseProbe::lookAhead(const UniqueFd& folder, const char* name) {
    const FileSystemFacts& facts = systems_.of(folder);
    struct stat status {};
    if (facts.isLocal || statusNow(folder, name, true, status) != 0) return;
    static_cast<void>(afterTwoLooks(stampOf(status), facts));
}

Readiness UseProbe::look(const UniqueFd& file, const FileStamp& stamp) {
    const FileSystemFacts& facts = systems_.of(file, stamp.identity.device);
    if (!facts.isLocal) return afterTwoLooks(stamp, facts);
    switch (askForWriters(file)) {
        case Use::writing:
            return {Readiness::State::inUse};
        case Use::unknown:
            // Times may be rounded down by a step of the file system's clock.
            return afterRest(stamp, facts, kQuiet + facts.timeStep, watched_.evenTime());
        default:
            break;
    }
    // Whoever writes within one step of the clock after this look leaves an equal stamp.
    const bool isCoarse = stamp.modified.nanoseconds == 0 && stamp.changed.nanoseconds == 0;
    const std::chrono::nanoseconds step =
        isCoarse ? std::max<std::chrono::nanoseconds>(kCoarseStep, facts.timeStep) : facts.timeStep;
    return afterRest(stamp, facts, step, step);
}

Readiness UseProbe::afterTwoLooks(const FileStamp& stamp, const FileSystemFacts& facts) {
    const auto wait = quiet_.look(stamp, facts.isNetwork ? kQuietOnNetworks : kQuiet);
    if (!wait) return {Readiness::State::inUse};
    return wait->count() == 0 ? Readiness{} : Readiness{Readiness::State::unknown, *wait};
}

// A time in the future tells nothing, and one of long ago no more than `oldest`.
Readiness UseProbe::afterRest(const FileStamp& stamp, const FileSystemFacts& facts, std::chrono::nanoseconds rest,
                              std::chrono::nanoseconds oldest) {
    const auto told = clock_.now().time_since_epoch() - sinceEpoch(std::max(stamp.modified, stamp.changed));
    if (told < std::chrono::nanoseconds(0)) return afterTwoLooks(stamp, facts);
    const auto age = std::min<std::chrono::nanoseconds>(told, oldest);
    return age >= rest ? Readiness{} : Readiness{Readiness::State::unknown, rest - age};
}

}  // namespace vantrell
