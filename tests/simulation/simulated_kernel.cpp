// SPDX-License-Identifier: MIT
#include "simulation/simulated_kernel.h"

#include <dirent.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vantrell::test {

namespace {

constexpr std::chrono::microseconds kCallTime{20};
constexpr mode_t kUmask = 022;
constexpr mode_t kModeBits = 07777;
constexpr int kTmpFile = O_TMPFILE & ~O_DIRECTORY;

constexpr std::array kNames{
    "any",        "openat",     "openat2",        "read",         "pread",     "write",         "pwrite",
    "getdents64", "flistxattr", "fgetxattr",      "getrandom",    "fstat",     "fstatat",       "statx",
    "fstatfs",    "faccessat",  "linkat",         "linkOpenFile", "renameat2", "unlinkat",      "mkdirat",
    "fsync",      "fdatasync",  "ftruncate",      "futimens",     "fchmod",    "chmodOpenFile", "fchown",
    "fsetxattr",  "flock",      "setLeaseSignal", "setLease",     "close",     "startFlush"};

// Their errors are negative numbers.
bool givesNumber(Call call) { return call <= Call::getrandom; }
bool isInterruptible(Call call) { return (call >= Call::read && call <= Call::pwrite) || call == Call::ftruncate; }

timespec timeOf(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    return {seconds.count(), (time - seconds).count()};
}

statx_timestamp statxTimeOf(std::chrono::nanoseconds time) {
    const timespec plain = timeOf(time);
    return {plain.tv_sec, static_cast<__u32>(plain.tv_nsec), 0};
}

void fill(struct stat& into, const Spot& spot) {
    const Inode& inode = spot.inode();
    into = {};
    into.st_dev = spot.disk->traits.device;
    into.st_ino = inode.number;
    into.st_mode = inode.mode;
    into.st_nlink = inode.links + (S_ISDIR(inode.mode) ? 1 : 0);
    into.st_uid = into.st_gid = inode.owner;
    into.st_size = static_cast<off_t>(inode.bytes->size());
    into.st_blksize = 4096;
    into.st_blocks = (into.st_size + 511) / 512;
    into.st_atim = timeOf(inode.accessed);
    into.st_mtim = timeOf(inode.modified);
    into.st_ctim = timeOf(inode.changed);
}

void fill(struct statx& into, const Spot& spot, unsigned mask) {
    const Inode& inode = spot.inode();
    const DiskTraits& traits = spot.disk->traits;
    into = {};
    into.stx_mask = STATX_BASIC_STATS | (mask & STATX_MNT_ID) | (traits.hasBirthTimes ? STATX_BTIME : 0U);
    into.stx_dev_major = major(traits.device);
    into.stx_dev_minor = minor(traits.device);
    into.stx_ino = inode.number;
    into.stx_mode = static_cast<__u16>(inode.mode);
    into.stx_nlink = inode.links + (S_ISDIR(inode.mode) ? 1 : 0);
    into.stx_uid = into.stx_gid = inode.owner;
    into.stx_size = inode.bytes->size();
    into.stx_atime = statxTimeOf(inode.accessed);
    into.stx_mtime = statxTimeOf(inode.modified);
    into.stx_ctime = statxTimeOf(inode.changed);
    if (traits.hasBirthTimes) into.stx_btime = statxTimeOf(inode.born);
    into.stx_mnt_id = spot.disk->mountId;
}

// One entry at the end of `into`; false when there is no room.
bool putEntry(std::span<std::byte>& into, std::string_view name, const Spot& spot) {
    constexpr std::size_t kNameAt = offsetof(dirent64, d_name);
    const std::size_t size = (kNameAt + name.size() + 1 + 7) / 8 * 8;
    if (size > into.size()) return false;
    dirent64 entry{};
    entry.d_ino = spot.inode().number;
    entry.d_reclen = static_cast<unsigned short>(size);
    entry.d_type = spot.disk->traits.tellsTypes ? static_cast<unsigned char>(IFTODT(spot.inode().mode)) : DT_UNKNOWN;
    std::memset(into.data(), 0, size);
    std::memcpy(into.data(), &entry, kNameAt);
    std::memcpy(into.data() + kNameAt, name.data(), name.size());
    into = into.subspan(size);
    return true;
}

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
    CallRecord record;
    record.call = call;
    record.number = calls_;
    record.tree = this;
    record.first = spotOf(ends.file);
    record.firstName = ends.name;
    record.hasSecond = ends.otherFile != -1;
    if (record.hasSecond) record.second = spotOf(ends.otherFile);
    record.secondName = ends.otherName;
    return record;
}

int SimulatedKernel::planned(Call call, const Ends& ends) {
    if (isInterruptible(call) && chance_.oneIn(interruptOneIn)) return EINTR;
    for (PlannedFault& fault : faults) {
        if (calls_ < fault.from || fault.times == 0 || (fault.call != Call::any && fault.call != call)) continue;
        const CallRecord record = recordOf(call, ends);
        if (!fault.below.empty() && !liesBelow(record.path(), fault.below) &&
            !liesBelow(record.otherPath(), fault.below))
            continue;
        if (fault.times != PlannedFault::kAlways) --fault.times;
        ++faultsMet;
        if (fault.losesData && record.first.disk != nullptr)
            record.first.disk->loseFlush(record.first.disk->beginFlush(record.first.node, call != Call::fdatasync));
        return fault.error;
    }
    return 0;
}

template <class Act>
long SimulatedKernel::run(Call call, Changed changed, const Ends& ends, Act act) {
    const int sign = givesNumber(call) ? -1 : 1;
    if (++calls_ >= killAt_) return sign * EIO;
    clock_.advance(kCallTime);
    const bool isFaulty = !faults.empty() || interruptOneIn != 0;
    const int error = isFaulty && call != Call::close ? planned(call, ends) : 0;
    const long answer = error != 0 ? sign * error : act();
    if (afterCall) {
        CallRecord record = recordOf(call, ends);
        record.answer = answer;
        if (sign < 0 ? answer >= 0 : answer == 0) record.changed = changed;
        afterCall(record);
    }
    return answer;
}

// A call on an open file.
template <class Act>
long SimulatedKernel::runOn(Call call, Changed changed, int file, Needs needs, Act act) {
    const int sign = givesNumber(call) ? -1 : 1;
    return run(call, changed, {file}, [&]() -> long {
        OpenFile* const open = fileOf(file);
        if (open == nullptr) return sign * EBADF;
        const int access = open->flags & O_ACCMODE;
        const bool isPin = (open->flags & O_PATH) != 0;
        if ((isPin && needs != Needs::pin) || (needs == Needs::reading && access == O_WRONLY) ||
            (needs == Needs::writing && access == O_RDONLY))
            return sign * EBADF;
        if (open->spot.disk == nullptr && !open->text) return sign * EIO;
        return act(*open);
    });
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
    return static_cast<int>(
        run(Call::openat, openChange(flags), {folder, path}, [&] { return openAt(folder, path, flags, mode, {}); }));
}

int SimulatedKernel::openat2(int folder, const char* path, const open_how& how) {
    constexpr auto kKnown = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_MAGICLINKS | RESOLVE_NO_XDEV;
    const int flags = static_cast<int>(how.flags);
    return static_cast<int>(run(Call::openat2, openChange(flags), {folder, path}, [&]() -> long {
        if ((how.resolve & ~__u64{kKnown}) != 0) return -EINVAL;
        if (how.mode != 0 && (flags & (O_CREAT | kTmpFile)) == 0) return -EINVAL;
        Way way;
        way.beneath = (how.resolve & RESOLVE_BENEATH) != 0;
        way.noLinks = (how.resolve & RESOLVE_NO_SYMLINKS) != 0;
        way.oneMount = (how.resolve & RESOLVE_NO_XDEV) != 0;
        return openAt(folder, path, flags, static_cast<mode_t>(how.mode), way);
    }));
}

Changed SimulatedKernel::openChange(int flags) {
    if ((flags & O_CREAT) != 0) return Changed::names;
    return (flags & O_TRUNC) != 0 ? Changed::contents : Changed::nothing;
}

int SimulatedKernel::openAt(int folder, std::string_view path, int flags, mode_t mode, Way way) {
    if (path.starts_with("/proc/") || path.starts_with("/sys/")) {
        std::string text = virtualText(path);
        if (text.empty()) return -ENOENT;
        return keepOpen({{}, std::make_shared<const std::string>(std::move(text)), flags & O_ACCMODE});
    }
    const bool isExclusive = (flags & O_CREAT) != 0 && (flags & O_EXCL) != 0;
    way.followLast = (flags & O_NOFOLLOW) == 0 && !isExclusive;
    Target target;
    if (const int error = find(folder, path, way, target); error != 0) return -error;
    mode = S_IFREG | (mode & kModeBits & ~kUmask);
    if ((flags & kTmpFile) != 0) return openNameless(target, flags, mode);
    if (target.file.node == kNoNode) {
        if ((flags & O_CREAT) == 0) return -ENOENT;
        if (target.isFolderWanted) return -EISDIR;
        target.file.disk = target.folder.disk;
        if (const int error = makeEntry(target, mode, true, target.file.node); error != 0) return -error;
        return keepOpen({target.file, nullptr, flags});
    }
    if (const int error = isExclusive ? EEXIST : checkOpening(target.file, flags); error != 0) return -error;
    if ((flags & O_TRUNC) != 0) target.file.disk->resize(target.file.node, 0, now());
    return keepOpen({target.file, nullptr, flags});
}

int SimulatedKernel::openNameless(const Target& target, int flags, mode_t mode) {
    const Spot& folder = target.file;
    if ((flags & O_ACCMODE) == O_RDONLY) return -EINVAL;
    if (folder.node == kNoNode) return -ENOENT;
    if (!S_ISDIR(folder.inode().mode)) return -ENOTDIR;
    if (!mayUse(folder, W_OK | X_OK)) return -EACCES;
    if (!folder.disk->traits.hasNameless) return -EOPNOTSUPP;
    if (folder.disk->free() == 0) return -ENOSPC;
    const Spot file{folder.disk, folder.disk->create(mode, kUser, now())};
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
    const int wanted = (access == O_WRONLY ? 0 : R_OK) | (access == O_RDONLY ? 0 : W_OK);
    return mayUse(file, wanted) ? 0 : EACCES;
}

int SimulatedKernel::keepOpen(OpenFile file) {
    const auto unused = std::find_if(files_.begin(), files_.end(), [](const OpenFile& open) { return open.flags < 0; });
    const auto number = static_cast<std::size_t>(unused - files_.begin());
    if (number >= mostOpen) return -EMFILE;
    if (file.spot.disk != nullptr) file.spot.disk->open(file.spot.node, file.flags);
    if (unused == files_.end()) files_.emplace_back();
    files_[number] = std::move(file);
    return static_cast<int>(number);
}

void SimulatedKernel::close(int file) noexcept {
    run(Call::close, Changed::nothing, {file}, [&]() -> long {
        OpenFile* const open = fileOf(file);
        if (open == nullptr) return EBADF;
        if (open->spot.disk != nullptr) open->spot.disk->close(open->spot.node, open->flags);
        *open = OpenFile();
        return 0;
    });
}

// Contents.

long SimulatedKernel::readAt(const OpenFile& file, std::span<std::byte> into, off_t offset) {
    if (!file.text && S_ISDIR(file.spot.inode().mode)) return -EISDIR;
    const std::string& bytes = file.text ? *file.text : *file.spot.inode().bytes;
    const auto begin = std::min(static_cast<std::size_t>(offset), bytes.size());
    std::size_t count = std::min(into.size(), bytes.size() - begin);
    if (count > 1 && chance_.oneIn(shortOneIn)) count = 1 + chance_.below(count);
    std::memcpy(into.data(), bytes.data() + begin, count);
    return static_cast<long>(count);
}

long SimulatedKernel::writeAt(const OpenFile& file, std::span<const std::byte> bytes, off_t& offset) {
    const Spot& spot = file.spot;
    if ((file.flags & O_APPEND) != 0) offset = static_cast<off_t>(spot.inode().bytes->size());
    if (bytes.empty()) return 0;
    std::size_t count = bytes.size();
    if (count > 1 && chance_.oneIn(shortOneIn)) count = 1 + chance_.below(count);
    const std::string text(reinterpret_cast<const char*>(bytes.data()), count);
    const std::size_t written = spot.disk->write(spot.node, static_cast<std::size_t>(offset), text, now());
    offset += static_cast<off_t>(written);
    return written == 0 ? -ENOSPC : static_cast<long>(written);
}

ssize_t SimulatedKernel::read(int file, std::span<std::byte> into) {
    return runOn(Call::read, Changed::nothing, file, Needs::reading, [&](OpenFile& open) {
        const long count = readAt(open, into, open.next);
        open.next += std::max(count, 0L);
        return count;
    });
}

ssize_t SimulatedKernel::pread(int file, std::span<std::byte> into, off_t offset) {
    return runOn(Call::pread, Changed::nothing, file, Needs::reading,
                 [&](const OpenFile& open) { return readAt(open, into, offset); });
}

ssize_t SimulatedKernel::write(int file, std::span<const std::byte> bytes) {
    return runOn(Call::write, Changed::contents, file, Needs::writing,
                 [&](OpenFile& open) { return writeAt(open, bytes, open.next); });
}

ssize_t SimulatedKernel::pwrite(int file, std::span<const std::byte> bytes, off_t offset) {
    return runOn(Call::pwrite, Changed::contents, file, Needs::writing,
                 [&](const OpenFile& open) { return writeAt(open, bytes, offset); });
}

// In the order of names, and from the last one on, so that no entry that stays is left out or given twice.
ssize_t SimulatedKernel::getdents64(int folder, std::span<std::byte> into) {
    return runOn(Call::getdents64, Changed::nothing, folder, Needs::reading, [&](OpenFile& open) -> long {
        if (open.text || !S_ISDIR(open.spot.inode().mode)) return -ENOTDIR;
        const Inode& inode = open.spot.inode();
        if (inode.links == 0) return -ENOENT;
        const std::size_t room = into.size();
        for (; open.listed < 2; ++open.listed) {
            if (!putEntry(into, open.listed == 0 ? "." : "..", open.spot)) break;
        }
        auto next = open.lastListed.empty() ? inode.names.begin() : inode.names.upper_bound(open.lastListed);
        for (; next != inode.names.end() && putEntry(into, next->first, {open.spot.disk, next->second}); ++next)
            open.lastListed = next->first;
        if (into.size() == room && next != inode.names.end()) return -EINVAL;
        return static_cast<long>(room - into.size());
    });
}

int SimulatedKernel::ftruncate(int file, off_t size) {
    return static_cast<int>(
        runOn(Call::ftruncate, Changed::contents, file, Needs::writing, [&](const OpenFile& open) -> long {
            open.spot.disk->resize(open.spot.node, static_cast<std::size_t>(size), now());
            return 0;
        }));
}

// There are no extended attributes.

ssize_t SimulatedKernel::flistxattr(int file, std::span<char>) {
    return runOn(Call::flistxattr, Changed::nothing, file, Needs::anything, [](const OpenFile&) { return 0L; });
}

ssize_t SimulatedKernel::fgetxattr(int file, const char*, std::span<char>) {
    return runOn(Call::fgetxattr, Changed::nothing, file, Needs::anything, [](const OpenFile&) { return -ENODATA; });
}

int SimulatedKernel::fsetxattr(int file, const char*, std::span<const char>) {
    return static_cast<int>(
        runOn(Call::fsetxattr, Changed::nothing, file, Needs::anything, [](const OpenFile&) { return EOPNOTSUPP; }));
}

ssize_t SimulatedKernel::getrandom(std::span<std::byte> into) {
    return run(Call::getrandom, Changed::nothing, {}, [&] {
        for (std::byte& byte : into) byte = static_cast<std::byte>(chance_.below(256));
        return static_cast<long>(into.size());
    });
}

// Looking.

int SimulatedKernel::fstat(int file, struct stat& into) {
    return static_cast<int>(runOn(Call::fstat, Changed::nothing, file, Needs::pin, [&](const OpenFile& open) -> long {
        into = {};
        into.st_mode = S_IFREG | 0444U;
        if (!open.text) fill(into, open.spot);
        return 0;
    }));
}

// Finds what stands at a path, or with "" and AT_EMPTY_PATH what is open.
int SimulatedKernel::look(int folder, std::string_view path, int flags, Spot& into) {
    const OpenFile* const open = fileOf(folder);
    if (path.empty() && (flags & AT_EMPTY_PATH) != 0 && open != nullptr && open->spot.disk != nullptr) {
        into = open->spot;
        return 0;
    }
    Target target;
    Way way;
    way.followLast = (flags & AT_SYMLINK_NOFOLLOW) == 0;
    if (const int error = find(folder, path, way, target); error != 0) return error;
    into = target.file;
    return into.node == kNoNode ? ENOENT : 0;
}

int SimulatedKernel::fstatat(int folder, const char* path, struct stat& into, int flags) {
    return static_cast<int>(run(Call::fstatat, Changed::nothing, {folder, path}, [&]() -> long {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        if (error == 0) fill(into, spot);
        return error;
    }));
}

int SimulatedKernel::statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) {
    return static_cast<int>(run(Call::statx, Changed::nothing, {folder, path}, [&]() -> long {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        if (error == 0) fill(into, spot, mask);
        return error;
    }));
}

int SimulatedKernel::fstatfs(int file, struct statfs& into) {
    return static_cast<int>(runOn(Call::fstatfs, Changed::nothing, file, Needs::pin, [&](const OpenFile& open) -> long {
        into = {};
        if (open.text) return 0;
        const SimulatedDisk& disk = *open.spot.disk;
        into.f_type = disk.traits.magic;
        into.f_namelen = static_cast<long>(disk.traits.longestName);
        into.f_bsize = into.f_frsize = 1;
        into.f_blocks = disk.traits.capacity;
        into.f_bfree = into.f_bavail = disk.free();
        return 0;
    }));
}

int SimulatedKernel::faccessat(int folder, const char* path, int mode, int flags) {
    return static_cast<int>(run(Call::faccessat, Changed::nothing, {folder, path}, [&]() -> long {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        return error != 0 || mayUse(spot, mode) ? error : EACCES;
    }));
}

// Names.

int SimulatedKernel::linkat(int fromFolder, const char* from, int toFolder, const char* to) {
    return static_cast<int>(run(Call::linkat, Changed::names, {fromFolder, from, toFolder, to}, [&]() -> long {
        Spot file;
        if (const int error = look(fromFolder, from, AT_SYMLINK_NOFOLLOW, file); error != 0) return error;
        return linkAt(file, toFolder, to);
    }));
}

int SimulatedKernel::linkOpenFile(int file, int folder, const char* name) {
    return static_cast<int>(run(Call::linkOpenFile, Changed::names, {file, "", folder, name}, [&]() -> long {
        const OpenFile* const open = fileOf(file);
        if (open == nullptr) return ENOENT;
        return open->spot.disk == nullptr ? EXDEV : linkAt(open->spot, folder, name);
    }));
}

int SimulatedKernel::linkAt(const Spot& file, int folder, std::string_view name) {
    Target target;
    const int error = find(folder, name, {false}, target);
    return error != 0 ? error : link(file, target, true);
}

int SimulatedKernel::renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return static_cast<int>(run(Call::renameat2, Changed::names, {fromFolder, from, toFolder, to}, [&]() -> long {
        Target source;
        Target target;
        if (const int error = find(fromFolder, from, {false}, source); error != 0) return error;
        if (const int error = find(toFolder, to, {false}, target); error != 0) return error;
        return rename(source, target, flags, true);
    }));
}

int SimulatedKernel::unlinkat(int folder, const char* path, int flags) {
    return static_cast<int>(run(Call::unlinkat, Changed::names, {folder, path}, [&]() -> long {
        Target target;
        const int error = find(folder, path, {false}, target);
        return error != 0 ? error : remove(target, (flags & AT_REMOVEDIR) != 0, true);
    }));
}

int SimulatedKernel::mkdirat(int folder, const char* path, mode_t mode) {
    return static_cast<int>(run(Call::mkdirat, Changed::names, {folder, path}, [&]() -> long {
        Target target;
        Node made = kNoNode;
        const int error = find(folder, path, {false}, target);
        return error != 0 ? error : makeEntry(target, S_IFDIR | (mode & kModeBits & ~kUmask), true, made);
    }));
}

// Flushes.

int SimulatedKernel::flushNow(Call call, int file) {
    return static_cast<int>(runOn(call, Changed::stable, file, Needs::anything, [&](const OpenFile& open) -> long {
        SimulatedDisk& disk = *open.spot.disk;
        disk.endFlush(disk.beginFlush(open.spot.node, call == Call::fsync));
        return 0;
    }));
}

int SimulatedKernel::fsync(int file) { return flushNow(Call::fsync, file); }
int SimulatedKernel::fdatasync(int file) { return flushNow(Call::fdatasync, file); }

void SimulatedKernel::startFlush(RunQueue& queue, Ticket<int> ticket, int file) {
    const long error =
        runOn(Call::startFlush, Changed::nothing, file, Needs::anything, [&](const OpenFile& open) -> long {
            SimulatedDisk& disk = *open.spot.disk;
            flushes_.push_back({&queue, ticket, &disk, disk.beginFlush(open.spot.node, false)});
            return 0;
        });
    if (error != 0) queue.wake(ticket, static_cast<int>(error));
}

// What else is known of a file.

int SimulatedKernel::futimens(int file, const std::array<timespec, 2>& times) {
    return static_cast<int>(
        runOn(Call::futimens, Changed::nothing, file, Needs::anything, [&](const OpenFile& open) -> long {
            Inode& inode = open.spot.inode();
            if (inode.owner != kUser) return EPERM;
            const auto given = std::chrono::seconds(times[1].tv_sec) + std::chrono::nanoseconds(times[1].tv_nsec);
            if (times[1].tv_nsec != UTIME_OMIT)
                inode.modified = open.spot.disk->noted(times[1].tv_nsec == UTIME_NOW ? now() : given);
            if (!open.spot.disk->traits.changeFollowsModified) inode.changed = open.spot.disk->noted(now());
            return 0;
        }));
}

int SimulatedKernel::changeMode(Call call, int file, mode_t mode) {
    const Needs needs = call == Call::chmodOpenFile ? Needs::pin : Needs::anything;
    return static_cast<int>(runOn(call, Changed::nothing, file, needs, [&](const OpenFile& open) -> long {
        Inode& inode = open.spot.inode();
        const DiskTraits& traits = open.spot.disk->traits;
        if (S_ISLNK(inode.mode)) return EOPNOTSUPP;
        if (inode.owner != kUser || !traits.hasOwners) return EPERM;
        inode.mode = (inode.mode & S_IFMT) | (mode & kModeBits);
        if (!traits.changeFollowsModified) inode.changed = open.spot.disk->noted(now());
        return 0;
    }));
}

int SimulatedKernel::fchmod(int file, mode_t mode) { return changeMode(Call::fchmod, file, mode); }
int SimulatedKernel::chmodOpenFile(int file, mode_t mode) { return changeMode(Call::chmodOpenFile, file, mode); }

int SimulatedKernel::fchown(int file, uid_t owner, gid_t) {
    return static_cast<int>(
        runOn(Call::fchown, Changed::nothing, file, Needs::anything, [&](const OpenFile& open) -> long {
            const bool isOwn = owner == kUser && open.spot.inode().owner == kUser;
            return isOwn && open.spot.disk->traits.hasOwners ? 0 : EPERM;
        }));
}

int SimulatedKernel::flock(int file, int operation) {
    return static_cast<int>(runOn(Call::flock, Changed::nothing, file, Needs::anything, [&](OpenFile& open) -> long {
        const DiskTraits& traits = open.spot.disk->traits;
        if (!traits.hasLocks) return ENOLCK;
        if (!traits.locksFolders && S_ISDIR(open.spot.inode().mode)) return EBADF;
        const int kind = operation & ~LOCK_NB;
        for (const OpenFile& other : files_) {
            const bool isSame = &other != &open && other.flags >= 0 && other.spot == open.spot;
            if (isSame && (kind == LOCK_EX ? other.lock != LOCK_UN : kind == LOCK_SH && other.lock == LOCK_EX))
                return EWOULDBLOCK;
        }
        open.lock = kind;
        return 0;
    }));
}

int SimulatedKernel::setLeaseSignal(int file, int) {
    return static_cast<int>(
        runOn(Call::setLeaseSignal, Changed::nothing, file, Needs::anything, [](const OpenFile&) { return 0L; }));
}

int SimulatedKernel::setLease(int file, int kind) {
    return static_cast<int>(runOn(Call::setLease, Changed::nothing, file, Needs::anything, [&](OpenFile& open) -> long {
        const Inode& inode = open.spot.inode();
        const Leases leases = open.spot.disk->traits.leases;
        if (inode.owner != kUser) return EACCES;
        if (!S_ISREG(inode.mode) || leases == Leases::refused) return EINVAL;
        if (kind == F_UNLCK) return std::exchange(open.hasLease, false) ? 0 : EAGAIN;
        const bool isFree = kind == F_RDLCK ? inode.writers == 0 : inode.users == 1;
        if (leases == Leases::busy || (leases == Leases::honest && !isFree)) return EAGAIN;
        open.hasLease = true;
        return 0;
    }));
}

}  // namespace vantrell::test
