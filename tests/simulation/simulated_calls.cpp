// SPDX-License-Identifier: MIT
#include <dirent.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "simulation/simulated_kernel.h"

namespace vantrell::test {

namespace {

constexpr mode_t kModeBits = 07777;
constexpr Way kNotFollowed{false};

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
    into.st_size = static_cast<off_t>(inode.bytes->size());
    into.st_blksize = 4096;
    into.st_blocks = (into.st_size + 511) / 512;
    into.st_atim = timeOf(inode.modified);
    into.st_mtim = timeOf(inode.modified);
    into.st_ctim = timeOf(inode.changed);
}

// What nobody here asks for is left out.
void fill(struct statx& into, const Spot& spot, unsigned mask) {
    constexpr unsigned kBasic = STATX_TYPE | STATX_MODE | STATX_INO | STATX_SIZE | STATX_MTIME | STATX_CTIME;
    const Inode& inode = spot.inode();
    const DiskTraits& traits = spot.disk->traits;
    into = {};
    into.stx_mask = kBasic | (mask & STATX_MNT_ID) | (traits.hasBirthTimes ? STATX_BTIME : 0U);
    into.stx_dev_major = major(traits.device);
    into.stx_dev_minor = minor(traits.device);
    into.stx_ino = inode.number;
    into.stx_mode = static_cast<__u16>(inode.mode);
    into.stx_size = inode.bytes->size();
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

}  // namespace

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
    return runOn(Call::read, file, [&](OpenFile& open) {
        const long count = readAt(open, into, open.next);
        open.next += std::max(count, 0L);
        return count;
    });
}

ssize_t SimulatedKernel::pread(int file, std::span<std::byte> into, off_t offset) {
    return runOn(Call::pread, file, [&](const OpenFile& open) { return readAt(open, into, offset); });
}

ssize_t SimulatedKernel::write(int file, std::span<const std::byte> bytes) {
    return runOn(Call::write, file, [&](OpenFile& open) { return writeAt(open, bytes, open.next); });
}

ssize_t SimulatedKernel::pwrite(int file, std::span<const std::byte> bytes, off_t offset) {
    return runOn(Call::pwrite, file, [&](const OpenFile& open) { return writeAt(open, bytes, offset); });
}

// In the order of names, and from the last one on, so that no entry that stays is left out or given twice.
ssize_t SimulatedKernel::getdents64(int folder, std::span<std::byte> into) {
    return runOn(Call::getdents64, folder, [&](OpenFile& open) -> long {
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
    return runOn(Call::ftruncate, file, [&](const OpenFile& open) {
        open.spot.disk->resize(open.spot.node, static_cast<std::size_t>(size), now());
        return 0;
    });
}

// There are no extended attributes.

ssize_t SimulatedKernel::flistxattr(int file, std::span<char>) {
    return runOn(Call::flistxattr, file, [](const OpenFile&) { return 0; });
}

ssize_t SimulatedKernel::fgetxattr(int file, const char*, std::span<char>) {
    return runOn(Call::fgetxattr, file, [](const OpenFile&) { return -ENODATA; });
}

int SimulatedKernel::fsetxattr(int file, const char*, std::span<const char>) {
    return runOn(Call::fsetxattr, file, [](const OpenFile&) { return -EOPNOTSUPP; });
}

ssize_t SimulatedKernel::getrandom(std::span<std::byte> into) {
    return run(Call::getrandom, {}, [&] {
        for (std::byte& byte : into) byte = static_cast<std::byte>(chance_.below(256));
        return static_cast<long>(into.size());
    });
}

// Looking.

int SimulatedKernel::fstat(int file, struct stat& into) {
    return runOn(Call::fstat, file, [&](const OpenFile& open) {
        into = {};
        into.st_mode = S_IFREG | 0444U;
        if (!open.text) fill(into, open.spot);
        return 0;
    });
}

// Finds what stands at a path, or with "" and AT_EMPTY_PATH what is open.
int SimulatedKernel::look(int folder, std::string_view path, int flags, Spot& into) {
    const OpenFile* const open = fileOf(folder);
    if (path.empty() && (flags & AT_EMPTY_PATH) != 0 && open != nullptr && open->spot.disk != nullptr) {
        into = open->spot;
        return 0;
    }
    Target target;
    if (const int error = find(folder, path, {(flags & AT_SYMLINK_NOFOLLOW) == 0}, target); error != 0) return error;
    into = target.file;
    return into.node == kNoNode ? ENOENT : 0;
}

int SimulatedKernel::fstatat(int folder, const char* path, struct stat& into, int flags) {
    return run(Call::fstatat, {folder, path}, [&] {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        if (error == 0) fill(into, spot);
        return -error;
    });
}

int SimulatedKernel::statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) {
    return run(Call::statx, {folder, path}, [&] {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        if (error == 0) fill(into, spot, mask);
        return -error;
    });
}

int SimulatedKernel::fstatfs(int file, struct statfs& into) {
    return runOn(Call::fstatfs, file, [&](const OpenFile& open) {
        into = {};
        if (open.text) return 0;
        const SimulatedDisk& disk = *open.spot.disk;
        into.f_type = disk.traits.magic;
        into.f_namelen = static_cast<long>(disk.traits.longestName);
        into.f_bsize = into.f_frsize = 1;
        into.f_blocks = disk.traits.capacity;
        into.f_bfree = into.f_bavail = disk.free();
        return 0;
    });
}

int SimulatedKernel::faccessat(int folder, const char* path, int mode, int flags) {
    return run(Call::faccessat, {folder, path}, [&] {
        Spot spot;
        const int error = look(folder, path, flags, spot);
        const bool isDenied = error == 0 && (mode & W_OK) != 0 && (spot.inode().mode & S_IWUSR) == 0;
        return isDenied ? -EACCES : -error;
    });
}

// Names.

int SimulatedKernel::linkat(int fromFolder, const char* from, int toFolder, const char* to) {
    return run(Call::linkat, {fromFolder, from, toFolder, to}, [&] {
        Spot file;
        if (const int error = look(fromFolder, from, AT_SYMLINK_NOFOLLOW, file); error != 0) return -error;
        return linkAt(file, toFolder, to);
    });
}

int SimulatedKernel::linkOpenFile(int file, int folder, const char* name) {
    return run(Call::linkOpenFile, {file, "", folder, name}, [&] {
        const OpenFile* const open = fileOf(file);
        if (open == nullptr) return -ENOENT;
        return open->spot.disk == nullptr ? -EXDEV : linkAt(open->spot, folder, name);
    });
}

int SimulatedKernel::linkAt(const Spot& file, int folder, std::string_view name) {
    Target target;
    const int error = find(folder, name, kNotFollowed, target);
    return error != 0 ? -error : -link(file, target);
}

int SimulatedKernel::renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    return run(Call::renameat2, {fromFolder, from, toFolder, to}, [&] {
        Target source;
        Target target;
        if (const int error = find(fromFolder, from, kNotFollowed, source); error != 0) return -error;
        if (const int error = find(toFolder, to, kNotFollowed, target); error != 0) return -error;
        return -rename(source, target, flags);
    });
}

int SimulatedKernel::unlinkat(int folder, const char* path, int flags) {
    return run(Call::unlinkat, {folder, path}, [&] {
        Target target;
        const int error = find(folder, path, kNotFollowed, target);
        return error != 0 ? -error : -remove(target, (flags & AT_REMOVEDIR) != 0);
    });
}

int SimulatedKernel::mkdirat(int folder, const char* path, mode_t mode) {
    return run(Call::mkdirat, {folder, path}, [&] {
        Target target;
        Node made = kNoNode;
        const int error = find(folder, path, kNotFollowed, target);
        return error != 0 ? -error : -makeEntry(target, S_IFDIR | (mode & ~kUmask), made);
    });
}

// Flushes.

int SimulatedKernel::flushNow(Call call, int file) {
    return runOn(call, file, [&](const OpenFile& open) {
        open.spot.disk->flushNow(open.spot.node, call == Call::fsync);
        return 0;
    });
}

void SimulatedKernel::startFlush(RunQueue& queue, Ticket<int> ticket, int file) {
    const long error = runOn(Call::startFlush, file, [&](const OpenFile& open) {
        SimulatedDisk& disk = *open.spot.disk;
        flushes_.push_back({&queue, ticket, &disk, disk.beginFlush(open.spot.node, false)});
        return 0;
    });
    if (error != 0) queue.wake(ticket, static_cast<int>(error));
}

// What else is known of a file.

int SimulatedKernel::futimens(int file, const std::array<timespec, 2>& times) {
    return runOn(Call::futimens, file, [&](const OpenFile& open) {
        Inode& inode = open.spot.inode();
        const auto given = std::chrono::seconds(times[1].tv_sec) + std::chrono::nanoseconds(times[1].tv_nsec);
        if (times[1].tv_nsec != UTIME_OMIT)
            inode.modified = open.spot.disk->noted(times[1].tv_nsec == UTIME_NOW ? now() : given);
        inode.changed = open.spot.disk->traits.changeFollowsModified ? inode.modified : open.spot.disk->noted(now());
        return 0;
    });
}

int SimulatedKernel::changeMode(Call call, int file, mode_t mode) {
    return runOn(call, file, [&](const OpenFile& open) {
        Inode& inode = open.spot.inode();
        const DiskTraits& traits = open.spot.disk->traits;
        if (S_ISLNK(inode.mode)) return -EOPNOTSUPP;
        if (!traits.hasOwners) return -EPERM;
        inode.mode = (inode.mode & S_IFMT) | (mode & kModeBits);
        if (!traits.changeFollowsModified) inode.changed = open.spot.disk->noted(now());
        return 0;
    });
}

int SimulatedKernel::fchown(int file, uid_t, gid_t) {
    return runOn(Call::fchown, file,
                 [&](const OpenFile& open) { return open.spot.disk->traits.hasOwners ? 0 : -EPERM; });
}

int SimulatedKernel::flock(int file, int operation) {
    return runOn(Call::flock, file, [&](OpenFile& open) {
        const DiskTraits& traits = open.spot.disk->traits;
        if (!traits.hasLocks) return -ENOLCK;
        if (!traits.locksFolders && S_ISDIR(open.spot.inode().mode)) return -EBADF;
        const int kind = operation & ~LOCK_NB;
        for (const OpenFile& other : files_) {
            const bool isSame = &other != &open && other.flags >= 0 && other.spot == open.spot;
            if (isSame && (kind == LOCK_EX ? other.lock != LOCK_UN : kind == LOCK_SH && other.lock == LOCK_EX))
                return -EWOULDBLOCK;
        }
        open.lock = kind;
        return 0;
    });
}

int SimulatedKernel::setLeaseSignal(int file, int) {
    return runOn(Call::setLeaseSignal, file, [](const OpenFile&) { return 0; });
}

int SimulatedKernel::setLease(int file, int kind) {
    return runOn(Call::setLease, file, [&](OpenFile& open) {
        const Inode& inode = open.spot.inode();
        const Leases leases = open.spot.disk->traits.leases;
        if (!S_ISREG(inode.mode) || leases == Leases::refused) return -EINVAL;
        if (kind == F_UNLCK) return std::exchange(open.hasLease, false) ? 0 : -EAGAIN;
        const bool isFree = kind == F_RDLCK ? inode.writers == 0 : inode.users == 1;
        if (leases == Leases::busy || (leases == Leases::honest && !isFree)) return -EAGAIN;
        open.hasLease = true;
        return 0;
    });
}

}  // namespace vantrell::test
