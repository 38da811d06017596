// SPDX-License-Identifier: MIT
#include "simulation/simulated_kernel.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace vantrell::test {

namespace {

constexpr std::chrono::microseconds kCallTime{20};
constexpr int kTmpFile = O_TMPFILE & ~O_DIRECTORY;

constexpr std::array kNames{
    "any",        "openat",     "openat2",        "read",         "pread",     "write",         "pwrite",
    "getdents64", "flistxattr", "fgetxattr",      "getrandom",    "fstat",     "fstatat",       "statx",
    "fstatfs",    "faccessat",  "linkat",         "linkOpenFile", "renameat2", "unlinkat",      "mkdirat",
    "fsync",      "fdatasync",  "ftruncate",      "futimens",     "fchmod",    "chmodOpenFile", "fchown",
    "fsetxattr",  "flock",      "setLeaseSignal", "setLease",     "close",     "startFlush",    "flushed"};

Changed changedBy(Call call) {
    if (call == Call::write || call == Call::pwrite || call == Call::ftruncate) return Changed::contents;
    if (call >= Call::linkat && call <= Call::mkdirat) return Changed::names;
    const bool isFlush = call == Call::fsync || call == Call::fdatasync || call == Call::flushed;
    return isFlush ? Changed::stable : Changed::nothing;
}

bool isReading(Call call) { return call == Call::read || call == Call::pread || call == Call::getdents64; }
bool isInterruptible(Call call) { return (call >= Call::read && call <= Call::pwrite) || call == Call::ftruncate; }

std::string fullPath(const SimulatedTree& tree, const Spot& spot, std::string_view name) {
    if (name.starts_with('/')) return std::string(name);
    std::string path = spot.disk == nullptr ? "(nothing)" : tree.pathOf(spot);
    if (!name.empty() && name != ".") (path += path.ends_with('/') ? "" : "/") += name;
    return path;
}

bool liesBelow(const std::string& path, const std::string& folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

}  // namespace

const char* nameOf(Call call) { return kNames[static_cast<std::size_t>(call)]; }

std::string CallRecord::path() const { return fullPath(*tree, first, firstName); }
std::string CallRecord::otherPath() const { return hasSecond ? fullPath(*tree, second, secondName) : ""; }

std::string CallRecord::line() const {
    std::string text = std::to_string(number) + " " + nameOf(call) + " " + path();
    if (hasSecond) text += " > " + otherPath();
    return text + " = " + std::to_string(answer);
}

SimulatedKernel::SimulatedKernel(SimulatedClock& clock, SimulatedDisk& root, std::uint64_t seed)
    : SimulatedTree(clock, root, seed), clock_(clock), chance_(seed + 1), others_(*this) {}

// The process.

void SimulatedKernel::restart() {
    for (const OpenFile& file : files_) {
        if (file.flags >= 0 && file.spot.disk != nullptr) file.spot.disk->close(file.spot.node, file.flags);
    }
    files_.clear();
    flushes_.clear();
    killAt_ = PlannedFault::kAlways;
}

void SimulatedKernel::powerCut(Chance& chance) {
    restart();
    others_.forgetAll();
    for (const Mount& mount : mounts()) mount.disk->cut(chance);
    mountAgain();
}

void SimulatedKernel::pullOut(const std::string& point, Chance& chance) {
    SimulatedDisk* const disk = mountedAt(point);
    if (disk == nullptr) return;
    unmount(point);
    for (OpenFile& file : files_) {
        if (file.spot.disk == disk) file.spot.disk = nullptr;
    }
    std::erase_if(flushes_, [&](const FlushUnderWay& flush) {
        if (flush.disk == disk) flush.queue->wake(flush.ticket, EIO);
        return flush.disk == disk;
    });
    others_.forgetOn(*disk);
    disk->cut(chance);
}

bool SimulatedKernel::completeFlushes(Chance& chance) {
    if (flushes_.empty()) return false;
    const std::size_t first = chance.below(flushes_.size());
    for (std::size_t i = flushes_.size(); i-- > 0;) {
        if (i != first && !chance.oneIn(2)) continue;
        const FlushUnderWay done = std::move(flushes_[i]);
        flushes_.erase(flushes_.begin() + static_cast<std::ptrdiff_t>(i));
        done.disk->endFlush(done.flush);
        if (afterCall) {
            const Spot file{done.disk, done.flush.node};
            afterCall({Call::flushed, calls_, 0, Changed::stable, this, file, {}, {}, {}, false});
        }
        done.queue->wake(done.ticket, 0);
    }
    return true;
}

bool SimulatedKernel::hasOpenOn(const SimulatedDisk& disk) const {
    return std::any_of(files_.begin(), files_.end(),
                       [&](const OpenFile& file) { return file.flags >= 0 && file.spot.disk == &disk; });
}

std::size_t SimulatedKernel::openCount() const {
    return static_cast<std::size_t>(
        std::count_if(files_.begin(), files_.end(), [](const OpenFile& file) { return file.flags >= 0; }));
}

// What is the same for every call.

CallRecord SimulatedKernel::recordOf(Call call, const Ends& ends) const {
    const bool hasSecond = ends.otherFile != -1;
    const Spot second = hasSecond ? spotOf(ends.otherFile) : Spot();
    return {call, calls_, 0, Changed::nothing, this, spotOf(ends.file), second, ends.name, ends.otherName, hasSecond};
}

int SimulatedKernel::planned(Call call, const Ends& ends) {
    if (call == Call::close) return 0;
    if (isInterruptible(call) && chance_.oneIn(interruptOneIn)) return EINTR;
    for (PlannedFault& fault : faults) {
        if (calls_ < fault.from || fault.times == 0 || (fault.call != Call::any && fault.call != call)) continue;
        const CallRecord record = recordOf(call, ends);
        if (!fault.below.empty() && !liesBelow(record.path(), fault.below) &&
            !liesBelow(record.otherPath(), fault.below))
            continue;
        if (fault.times != PlannedFault::kAlways) --fault.times;
        ++faultsMet[static_cast<std::size_t>(call)];
        if (fault.losesData && record.first.disk != nullptr)
            record.first.disk->loseFlush(record.first.disk->beginFlush(record.first.node, call == Call::fsync));
        return fault.error;
    }
    return 0;
}

int SimulatedKernel::begin(Call call, const Ends& ends) {
    if (++calls_ >= killAt_) return EIO;
    clock_.advance(kCallTime);
    changed_ = changedBy(call);
    return planned(call, ends);
}

SimulatedKernel::Answer SimulatedKernel::end(Call call, const Ends& ends, long answer) const {
    const long given = call <= Call::getrandom ? answer : -answer;
    if (!afterCall || isDead()) return {given};
    CallRecord record = recordOf(call, ends);
    record.answer = given;
    if (answer >= 0) record.changed = changed_;
    afterCall(record);
    return {given};
}

// Whether an open file takes this call.
int SimulatedKernel::checkUse(const OpenFile* file, Call call) {
    const bool isLook = call == Call::fstat || call == Call::fstatfs;
    if (file == nullptr) return EBADF;
    if ((file->flags & O_PATH) != 0 && !isLook && call != Call::chmodOpenFile) return EBADF;
    const int access = file->flags & O_ACCMODE;
    if (isReading(call) && access == O_WRONLY) return EBADF;
    if (changedBy(call) == Changed::contents && access == O_RDONLY) return EBADF;
    if (file->spot.disk != nullptr) return 0;
    if (!file->text) return EIO;
    return isLook || isReading(call) ? 0 : EINVAL;
}

SimulatedKernel::OpenFile* SimulatedKernel::fileOf(int file) {
    const auto index = static_cast<std::size_t>(file);
    return index < files_.size() && files_[index].flags >= 0 ? &files_[index] : nullptr;
}

Spot SimulatedKernel::spotOf(int file) const {
    const auto index = static_cast<std::size_t>(file);
    return file == AT_FDCWD ? root() : index < files_.size() ? files_[index].spot : Spot();
}

int SimulatedKernel::find(int folder, std::string_view path, Way way, Target& into) {
    if (path.starts_with('/')) return resolve(root(), path, way, into);
    const OpenFile* const open = fileOf(folder);
    if (folder != AT_FDCWD && open == nullptr) return EBADF;
    if (open != nullptr && open->spot.disk == nullptr) return open->text ? ENOTDIR : EIO;
    return resolve(spotOf(folder), path, way, into);
}

// Opening.

int SimulatedKernel::openat(int folder, const char* path, int flags, mode_t mode) {
    return run(Call::openat, {folder, path}, [&] { return openAt(folder, path, flags, mode, {}); });
}

int SimulatedKernel::openat2(int folder, const char* path, const open_how& how) {
    return run(Call::openat2, {folder, path}, [&] {
        if ((how.resolve & ~__u64{RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS}) != 0) return -EINVAL;
        const Way way{true, (how.resolve & RESOLVE_BENEATH) != 0, (how.resolve & RESOLVE_NO_SYMLINKS) != 0};
        return openAt(folder, path, static_cast<int>(how.flags), static_cast<mode_t>(how.mode), way);
    });
}

int SimulatedKernel::openAt(int folder, std::string_view path, int flags, mode_t mode, Way way) {
    if (openCount() >= mostOpen) return -EMFILE;
    if (path.starts_with("/proc/") || path.starts_with("/sys/")) {
        std::string text = virtualText(path);
        if (text.empty()) return -ENOENT;
        return keepOpen({{}, std::make_shared<const std::string>(std::move(text)), flags & O_ACCMODE});
    }
    const bool isExclusive = (flags & O_CREAT) != 0 && (flags & O_EXCL) != 0;
    way.followLast = (flags & O_NOFOLLOW) == 0 && !isExclusive;
    Target target;
    if (const int error = find(folder, path, way, target); error != 0) return -error;
    mode = S_IFREG | (mode & ~kUmask);
    if ((flags & kTmpFile) != 0) return openNameless(target, flags, mode);
    if (target.file.node == kNoNode) {
        if ((flags & O_CREAT) == 0) return -ENOENT;
        if (target.isFolderWanted) return -EISDIR;
        target.file.disk = target.folder.disk;
        if (const int error = makeEntry(target, mode, target.file.node); error != 0) return -error;
        changed_ = Changed::names;
        return keepOpen({target.file, nullptr, flags});
    }
    if (const int error = isExclusive ? EEXIST : checkOpening(target.file, flags); error != 0) return -error;
    if ((flags & O_TRUNC) != 0) {
        target.file.disk->resize(target.file.node, 0, now());
        changed_ = Changed::contents;
    }
    return keepOpen({target.file, nullptr, flags});
}

int SimulatedKernel::openNameless(const Target& target, int flags, mode_t mode) {
    const Spot& folder = target.file;
    if ((flags & O_ACCMODE) == O_RDONLY) return -EINVAL;
    if (folder.node == kNoNode) return -ENOENT;
    if (!S_ISDIR(folder.inode().mode)) return -ENOTDIR;
    if (!folder.disk->traits.hasNameless) return -EOPNOTSUPP;
    if (folder.disk->free() == 0) return -ENOSPC;
    const Spot file{folder.disk, folder.disk->create(mode, now())};
    file.inode().bornNameless = true;
    return keepOpen({file, nullptr, flags});
}

int SimulatedKernel::checkOpening(const Spot& file, int flags) {
    const mode_t mode = file.inode().mode;
    const int access = flags & O_ACCMODE;
    if (S_ISDIR(mode) && (flags & O_CREAT) != 0) return EISDIR;
    if (!S_ISDIR(mode) && (flags & O_DIRECTORY) != 0) return ENOTDIR;
    if ((flags & O_PATH) != 0) return 0;
    if (S_ISLNK(mode)) return ELOOP;
    if (S_ISDIR(mode) && access != O_RDONLY) return EISDIR;
    return access != O_RDONLY && (mode & S_IWUSR) == 0 ? EACCES : 0;
}

int SimulatedKernel::keepOpen(OpenFile file) {
    const auto unused = std::find_if(files_.begin(), files_.end(), [](const OpenFile& open) { return open.flags < 0; });
    const auto number = static_cast<std::size_t>(unused - files_.begin());
    if (file.spot.disk != nullptr) file.spot.disk->open(file.spot.node, file.flags);
    if (unused == files_.end()) files_.emplace_back();
    files_[number] = std::move(file);
    return static_cast<int>(number);
}

void SimulatedKernel::close(int file) noexcept {
    run(Call::close, {file}, [&] {
        OpenFile* const open = fileOf(file);
        if (open == nullptr) return -EBADF;
        if (open->spot.disk != nullptr) open->spot.disk->close(open->spot.node, open->flags);
        *open = OpenFile();
        return 0;
    });
}

}  // namespace vantrell::test
