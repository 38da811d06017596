// SPDX-License-Identifier: MIT
#include "simulation/simulated_kernel.h"

#include <dirent.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <numeric>
#include <set>

#include "platform/linux/linux_kernel.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {
namespace {

// Calls on one of the two kernels, in one folder.
class Bench {
public:
    Bench(Kernel& used, const std::string& folder)
        : kernel_(used), root_(used.openat(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY, 0)) {}
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;
    ~Bench() {
        for (const int file : files_) kernel_.close(file);
        kernel_.close(root_);
    }

    // 0 or the negative error number.
    long keep(int file) {
        if (file >= 0) files_.push_back(file);
        return std::min(file, 0);
    }
    long open(const char* path, int flags) { return keep(kernel_.openat(root_, path, flags, 0666)); }
    long open2(const char* path, std::uint64_t flags, std::uint64_t rules) {
        return keep(kernel_.openat2(root_, path, {flags, 0, rules}));
    }
    // Of the file that was opened last.
    [[nodiscard]] int last() const { return files_.back(); }
    long write(std::string_view text) { return kernel_.write(last(), std::as_bytes(std::span(text))); }
    std::string read() {
        std::string text(100, '\0');
        const long count = kernel_.pread(last(), std::as_writable_bytes(std::span(text)), 0);
        return count < 0 ? std::to_string(count) : text.substr(0, static_cast<std::size_t>(count));
    }
    std::string look() {
        struct stat status {};
        const int error = kernel_.fstat(last(), status);
        return error != 0 ? std::to_string(error) : told(status);
    }
    long lock() { return kernel_.flock(last(), LOCK_EX | LOCK_NB); }
    long lease(int kind) { return kernel_.setLease(last(), kind); }
    long name(const char* path) { return kernel_.linkOpenFile(last(), root_, path); }
    std::string list() {
        alignas(8) std::array<std::byte, 96> buffer{};
        std::set<std::string> names;
        for (long count = 1; (count = kernel_.getdents64(last(), buffer)) != 0;) {
            if (count < 0) return std::to_string(count);
            for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
                const auto* const entry = reinterpret_cast<const dirent64*>(buffer.data() + at);
                names.insert(std::string(entry->d_name) + ":" + std::to_string(entry->d_type) + " ");
                at += entry->d_reclen;
            }
        }
        return std::accumulate(names.begin(), names.end(), std::string());
    }
    // Of what stands in the folder.
    std::string lookAt(const char* path, int flags) {
        struct stat status {};
        const int error = kernel_.fstatat(root_, path, status, flags);
        return error != 0 ? std::to_string(error) : told(status);
    }
    long rename(const char* from, const char* to, unsigned flags = 0) {
        return kernel_.renameat2(root_, from, root_, to, flags);
    }
    long link(const char* from, const char* to) { return kernel_.linkat(root_, from, root_, to); }
    long remove(const char* path, int flags = 0) { return kernel_.unlinkat(root_, path, flags); }
    long makeFolder(const char* path) { return kernel_.mkdirat(root_, path, 0777); }
    [[nodiscard]] Kernel& kernel() { return kernel_; }

private:
    static std::string told(const struct stat& status) {
        // The rest is up to the umask.
        const std::string mode = std::to_string(status.st_mode & (S_IFMT | S_IRWXU));
        if (!S_ISREG(status.st_mode)) return mode;
        return mode + " " + std::to_string(status.st_nlink) + " " + std::to_string(status.st_size);
    }

    Kernel& kernel_;
    int root_;
    std::vector<int> files_;
};

constexpr int kFolder = O_RDONLY | O_DIRECTORY;
constexpr int kNew = O_RDWR | O_CREAT | O_EXCL;
constexpr std::uint64_t kBeneath = RESOLVE_BENEATH;
constexpr std::uint64_t kNoLinks = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;

std::string textOf(const std::string& text) { return text; }
std::string textOf(long number) { return std::to_string(number); }

struct Step {
    const char* call;
    std::string (*answer)(Bench&);
};
#define STEP(expression)                                            \
    Step {                                                          \
#expression, [](Bench & b) { return textOf(b.expression); } \
    }

// There are a file f, a folder d, and links: lf to f, ld to d, loop to itself, nowhere to none, away to the root.
const std::array kSteps{
    // Opening, and what links do.
    STEP(open("none", O_RDONLY)), STEP(open("f/", O_RDONLY)), STEP(open("", O_RDONLY)), STEP(open("lf", O_RDONLY)),
    STEP(open("lf", O_RDONLY | O_NOFOLLOW)), STEP(open("ld", kFolder | O_NOFOLLOW)),
    STEP(open("ld/", kFolder | O_NOFOLLOW)), STEP(open("loop", O_RDONLY)), STEP(open("lf", O_PATH | O_NOFOLLOW)),
    STEP(open("d", O_RDWR)), STEP(open("d", O_RDONLY | O_CREAT)), STEP(open("f", kNew)), STEP(open("nowhere", kNew)),
    STEP(open("new/", kNew)), STEP(open("..", kFolder)), STEP(open(std::string(256, 'x').c_str(), O_RDONLY)),
    STEP(open(std::string(4096, '/').c_str(), O_RDONLY)), STEP(open2("ld", O_RDONLY, kNoLinks)),
    STEP(open2("ld", O_RDONLY, kBeneath)), STEP(open2("away", O_RDONLY, kBeneath)),
    STEP(open2("d/..", O_RDONLY, kBeneath)), STEP(open2("d/../..", O_RDONLY, kBeneath)),
    STEP(open2("/", O_RDONLY, kBeneath)), STEP(open2("lf", O_PATH | O_NOFOLLOW, kNoLinks)),
    STEP(open2("lf", O_NOFOLLOW, kNoLinks)), STEP(open("f", O_RDONLY)),
    // What is open.
    STEP(lookAt("f", 0)), STEP(lookAt("lf", 0)), STEP(lookAt("nowhere", 0)), STEP(look()), STEP(read()),
    STEP(write("x")), STEP(lease(F_RDLCK)),
    // New files.
    STEP(open("n", kNew)), STEP(write("0123456789")), STEP(lookAt("n", 0)), STEP(kernel().ftruncate(b.last(), 4)),
    STEP(lock()), STEP(lease(F_RDLCK)), STEP(lease(F_WRLCK)), STEP(lease(F_UNLCK)), STEP(lease(F_UNLCK)),
    STEP(open("n", O_RDONLY)), STEP(lock()), STEP(read()), STEP(lease(F_RDLCK)), STEP(lease(F_WRLCK)), STEP(write("x")),
    STEP(open("n", O_WRONLY | O_APPEND)), STEP(write("ab")), STEP(read()), STEP(open("n", O_PATH)), STEP(read()),
    STEP(kernel().fsync(b.last())), STEP(look()), STEP(kernel().fchmod(b.last(), 0600)),
    STEP(kernel().chmodOpenFile(b.last(), 0640)), STEP(lookAt("n", 0)), STEP(open("n", O_WRONLY | O_TRUNC)),
    STEP(lookAt("n", 0)),
    // Names.
    STEP(makeFolder("f")), STEP(makeFolder("e/")), STEP(makeFolder(".")), STEP(link("n", "f")), STEP(link("n", "m")),
    STEP(link("d", "d2")), STEP(rename("n", "m")), STEP(rename("n", "m", RENAME_NOREPLACE)), STEP(rename("m", "d")),
    STEP(rename("d", "m")), STEP(rename("d", "d/x")), STEP(rename("m", "d/m")), STEP(rename("e", "d")),
    STEP(rename("d", "e")), STEP(rename("n", "n2", RENAME_NOREPLACE)), STEP(rename("n2", "f")),
    STEP(rename("f", "new/")), STEP(rename(".", "x")), STEP(remove("e")), STEP(remove("e", AT_REMOVEDIR)),
    STEP(remove("f", AT_REMOVEDIR)), STEP(remove(".", AT_REMOVEDIR)), STEP(remove("f/")), STEP(remove("e/m")),
    STEP(open("e", kFolder)), STEP(remove("e", AT_REMOVEDIR)), STEP(list()), STEP(look()),
    STEP(keep(b.kernel().openat(b.last(), "x", kNew, 0666))),
    // Without a name.
    STEP(open(".", O_TMPFILE | O_RDWR)), STEP(open("f", O_TMPFILE | O_RDWR)), STEP(look()), STEP(name("f")),
    STEP(name("t")), STEP(lookAt("t", 0)), STEP(remove("t")), STEP(look()), STEP(name("t")), STEP(open("f", O_RDONLY)),
    STEP(remove("f")), STEP(name("f")), STEP(open(".", kFolder)), STEP(list()), STEP(list())};
#undef STEP

std::vector<std::string> answersOf(Kernel& kernel, const std::string& folder) {
    Bench bench(kernel, folder);
    std::vector<std::string> answers;
    for (const Step& step : kSteps) answers.push_back(step.call + (" = " + step.answer(bench)));
    return answers;
}

TEST(SimulatedKernel, AnswersAsLinuxDoes) {
    const TemporaryFolder real;
    SimulatedClock clock(std::chrono::system_clock::now());
    SimulatedDisk disk(traitsOf(DiskKind::ext4, 0));
    SimulatedKernel simulated(clock, disk, 1);
    writeFile(real / "f", "hello");
    ASSERT_TRUE(simulated.others().makeFolder("/t") && simulated.others().makeFile("/t/f", "hello"));
    real.makeFolder("d");
    ASSERT_TRUE(simulated.others().makeFolder("/t/d"));
    for (const auto& [leadsTo, name] :
         {std::pair("f", "lf"), {"d", "ld"}, {"loop", "loop"}, {"none", "nowhere"}, {"/", "away"}}) {
        std::filesystem::create_symlink(leadsTo, real / name);
        ASSERT_TRUE(simulated.others().makeLink(leadsTo, std::string("/t/") + name));
    }
    LinuxKernel linuxKernel;
    disk.traits.hasNameless = Bench(linuxKernel, real.path()).open(".", O_TMPFILE | O_RDWR) == 0;
    const std::vector<std::string> theirs = answersOf(linuxKernel, real.path());
    const std::vector<std::string> ours = answersOf(simulated, "/t");
    for (std::size_t i = 0; i < kSteps.size(); ++i) EXPECT_EQ(ours[i], theirs[i]);
}

}  // namespace
}  // namespace vantrell::test
