// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <sys/file.h>

#include <array>
#include <cerrno>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/kernel.h"
#include "simulation/other_programs.h"
#include "simulation/simulated_tree.h"

namespace vantrell::test {

// clang-format off
enum class Call : std::uint8_t {
    any, openat, openat2, read, pread, write, pwrite, getdents64, flistxattr, fgetxattr, getrandom, fstat, fstatat,
    statx, fstatfs, faccessat, linkat, linkOpenFile, renameat2, unlinkat, mkdirat, fsync, fdatasync, ftruncate,
    futimens, fchmod, chmodOpenFile, fchown, fsetxattr, flock, setLeaseSignal, setLease, close, startFlush,
    flushed,  ///< no call: one that `startFlush` began has ended
    count
};
// clang-format on
const char* nameOf(Call call);

/// An error that calls of one kind answer without effect. EINTR for ever would make the program try for ever.
struct PlannedFault {
    static constexpr std::uint64_t kAlways = std::numeric_limits<std::uint64_t>::max();

    Call call = Call::any;
    int error = 0;
    std::uint64_t from = 0;   ///< the number of the call from which on it counts
    std::uint64_t times = 1;  ///< so many calls
    std::string below;        ///< a full path: only what this folder or file is or holds; empty: everything
    /// Of a flush: what it was to write counts as written afterwards and is not on the disk.
    bool losesData = false;
};

/// What a call has changed.
enum class Changed : std::uint8_t { nothing, names, contents, stable };

/// One call of the program, told after it. Holds during the telling.
struct CallRecord {
    Call call = Call::any;
    std::uint64_t number = 0;
    long answer = 0;  ///< of the call, as the interface gives it
    Changed changed = Changed::nothing;
    const SimulatedTree* tree = nullptr;
    Spot first, second;                      ///< the open file, or the folder from which the name counts
    std::string_view firstName, secondName;  ///< as they were given; empty when the file was open
    bool hasSecond = false;

    /// Resolved full paths; the second is empty when the call has one only.
    [[nodiscard]] std::string path() const;
    [[nodiscard]] std::string otherPath() const;
    /// "1207 renameat2 /source/a > /done/a = 0"
    [[nodiscard]] std::string line() const;
};

/// The kernel under one process of the program, on simulated disks. Each call moves the clock on a little. Other
/// programs reach the same files through `others()`.
class SimulatedKernel final : public Kernel, public SimulatedTree {
public:
    /// Disks and clock outlive the kernel. The seed decides about short reads and the like.
    SimulatedKernel(SimulatedClock& clock, SimulatedDisk& root, std::uint64_t seed);

    // The process.
    /// Calls that were made so far, by all processes; the next one has this number + 1.
    [[nodiscard]] std::uint64_t calls() const { return calls_; }
    /// The process dies before the call of that number: this and all later ones answer EIO and do nothing, so that the
    /// program's objects can be destroyed.
    void killAt(std::uint64_t number) { killAt_ = number; }
    [[nodiscard]] bool isDead() const { return calls_ >= killAt_; }
    /// A new process: nothing is open, locked or under way. What the last one wrote stands.
    void restart();
    /// Every mounted disk loses what it may lose, everybody's files are closed, all disks are mounted again in their
    /// order, and a new process begins.
    void powerCut(Chance& chance);
    /// A disk is pulled out while it is in use: unmounted and cut; what is open on it answers EIO from now on.
    void pullOut(const std::string& point, Chance& chance);
    /// Ends some of the flushes under way, at least one. False when there are none.
    bool completeFlushes(Chance& chance);
    /// Whether the program has anything open there: its mount is busy then.
    [[nodiscard]] bool hasOpenOn(const SimulatedDisk& disk) const;
    [[nodiscard]] std::size_t openCount() const;

    // What goes wrong.
    std::vector<PlannedFault> faults;
    std::uint64_t shortOneIn = 0;      ///< one in so many reads and writes is short; 0: none
    std::uint64_t interruptOneIn = 0;  ///< one in so many reads, writes and truncations answers EINTR
    std::array<std::uint64_t, static_cast<std::size_t>(Call::count)> faultsMet{};  ///< planned faults, by call
    std::size_t mostOpen = 1024;                                                   ///< EMFILE beyond
    /// Told after each call, and after each flush that has ended, when it is set.
    std::function<void(const CallRecord&)> afterCall;

    [[nodiscard]] OtherPrograms& others() { return others_; }

    int openat(int folder, const char* path, int flags, mode_t mode) override;
    int openat2(int folder, const char* path, const open_how& how) override;
    ssize_t read(int file, std::span<std::byte> into) override;
    ssize_t pread(int file, std::span<std::byte> into, off_t offset) override;
    ssize_t write(int file, std::span<const std::byte> bytes) override;
    ssize_t pwrite(int file, std::span<const std::byte> bytes, off_t offset) override;
    ssize_t getdents64(int folder, std::span<std::byte> into) override;
    ssize_t flistxattr(int file, std::span<char> names) override;
    ssize_t fgetxattr(int file, const char* name, std::span<char> value) override;
    ssize_t getrandom(std::span<std::byte> into) override;
    int fstat(int file, struct stat& into) override;
    int fstatat(int folder, const char* path, struct stat& into, int flags) override;
    int statx(int folder, const char* path, int flags, unsigned mask, struct statx& into) override;
    int fstatfs(int file, struct statfs& into) override;
    int faccessat(int folder, const char* path, int mode, int flags) override;
    int linkat(int fromFolder, const char* from, int toFolder, const char* to) override;
    int linkOpenFile(int file, int folder, const char* name) override;
    int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) override;
    int unlinkat(int folder, const char* path, int flags) override;
    int mkdirat(int folder, const char* path, mode_t mode) override;
    int fsync(int file) override { return flushNow(Call::fsync, file); }
    int fdatasync(int file) override { return flushNow(Call::fdatasync, file); }
    int ftruncate(int file, off_t size) override;
    int futimens(int file, const std::array<timespec, 2>& times) override;
    int fchmod(int file, mode_t mode) override { return changeMode(Call::fchmod, file, mode); }
    int chmodOpenFile(int file, mode_t mode) override { return changeMode(Call::chmodOpenFile, file, mode); }
    int fchown(int file, uid_t owner, gid_t group) override;
    int fsetxattr(int file, const char* name, std::span<const char> value) override;
    int flock(int file, int operation) override;
    int setLeaseSignal(int file, int signal) override;
    int setLease(int file, int kind) override;
    void close(int file) noexcept override;
    void startFlush(RunQueue& queue, Ticket<int> ticket, int file) override;

private:
    struct OpenFile {
        Spot spot{};     ///< no disk: it was pulled out, or this is a virtual file
        Bytes text{};    ///< of a virtual file
        int flags = -1;  ///< -1: the number is free
        off_t next = 0;
        std::string lastListed{};
        int listed = 0;
        int lock = LOCK_UN;
        bool hasLease = false;
    };
    struct FlushUnderWay {
        RunQueue* queue = nullptr;
        Ticket<int> ticket;
        SimulatedDisk* disk = nullptr;
        SimulatedDisk::Flush flush;
    };
    /// What a call names: an open file, or a path from an open folder; and the second of the kind.
    struct Ends {
        int file = AT_FDCWD;
        std::string_view name{};
        int otherFile = -1;
        std::string_view otherName{};
    };

    struct Answer {
        long value;
        operator int() const { return static_cast<int>(value); }
        operator ssize_t() const { return value; }
    };

    // `act` gives a number, or the negative error number, for all calls alike.
    template <class Act>
    Answer run(Call call, const Ends& ends, Act act) {
        const int error = begin(call, ends);
        return end(call, ends, error != 0 ? -error : act());
    }
    template <class Act>
    Answer runOn(Call call, int file, Act act) {
        return run(call, {file}, [&]() -> long {
            OpenFile* const open = fileOf(file);
            const int error = checkUse(open, call);
            return error != 0 ? -error : act(*open);
        });
    }
    int begin(Call call, const Ends& ends);
    Answer end(Call call, const Ends& ends, long answer) const;
    static int checkUse(const OpenFile* file, Call call);
    static constexpr mode_t kUmask = 022;
    int planned(Call call, const Ends& ends);
    [[nodiscard]] CallRecord recordOf(Call call, const Ends& ends) const;
    [[nodiscard]] OpenFile* fileOf(int file);
    [[nodiscard]] Spot spotOf(int file) const;
    [[nodiscard]] int find(int folder, std::string_view path, Way way, Target& into);
    [[nodiscard]] int look(int folder, std::string_view path, int flags, Spot& into);
    int openAt(int folder, std::string_view path, int flags, mode_t mode, Way way);
    int openNameless(const Target& target, int flags, mode_t mode);
    static int checkOpening(const Spot& file, int flags);
    int keepOpen(OpenFile file);
    long readAt(const OpenFile& file, std::span<std::byte> into, off_t offset);
    long writeAt(const OpenFile& file, std::span<const std::byte> bytes, off_t& offset);
    int linkAt(const Spot& file, int folder, std::string_view name);
    int flushNow(Call call, int file);
    int changeMode(Call call, int file, mode_t mode);

    SimulatedClock& clock_;
    Chance chance_;
    OtherPrograms others_;
    std::vector<OpenFile> files_;
    std::vector<FlushUnderWay> flushes_;
    Changed changed_ = Changed::nothing;  ///< by the call under way
    std::uint64_t calls_ = 0;
    std::uint64_t killAt_ = PlannedFault::kAlways;
};

}  // namespace vantrell::test
