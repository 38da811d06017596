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
        : kernel(used), root(used.openat(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY, 0)) {}
    Bench(const Bench&) = delete;
    Bench& operator=(const Bench&) = delete;
    ~Bench() {
        for (const int file : files) kernel.close(file);
        kernel.close(root);
    }

    Kernel& kernel;
    int root;
    std::vector<int> files;  ///< in the order of opening

    // 0 or the negative error number.
    long keep(int file) {
        if (file >= 0) files.push_back(file);
        return std::min(file, 0);
    }
    long open(const char* path, int flags) { return keep(kernel.openat(root, path, flags, 0666)); }
    long open2(const char* path, std::uint64_t flags, std::uint64_t rules) {
        return keep(kernel.openat2(root, path, {flags, 0, rules}));
    }
    long write(std::size_t file, std::string_view text) {
        return kernel.write(files[file], std::as_bytes(std::span(text)));
    }
    std::string read(std::size_t file, long count = 100) {
        std::string text(static_cast<std::size_t>(count), '\0');
        count = kernel.pread(files[file], std::as_writable_bytes(std::span(text)), 0);
        return count < 0 ? std::to_string(count) : text.substr(0, static_cast<std::size_t>(count));
    }
    std::string look(const char* path, int flags) {
        struct stat status {};
        const int error = kernel.fstatat(root, path, status, flags);
        return error != 0 ? std::to_string(error) : told(status);
    }
    std::string told(std::size_t file) {
        struct stat status {};
        const int error = kernel.fstat(files[file], status);
        return error != 0 ? std::to_string(error) : told(status);
    }
    [[nodiscard]] std::size_t last() const { return files.size() - 1; }
    [[nodiscard]] long opened() const { return static_cast<long>(files.size()); }
    long close(std::size_t file) {
        kernel.close(files[file]);
        return 0;
    }
    long rename(const char* from, const char* to, unsigned flags = 0) {
        return kernel.renameat2(root, from, root, to, flags);
    }
    long link(const char* from, const char* to) { return kernel.linkat(root, from, root, to); }
    long remove(const char* path, int flags = 0) { return kernel.unlinkat(root, path, flags); }
    long makeFolder(const char* path) { return kernel.mkdirat(root, path, 0777); }
    std::string list(std::size_t folder) {
        alignas(8) std::array<std::byte, 96> buffer{};
        std::set<std::string> names;
        for (long count = 1; (count = kernel.getdents64(files[folder], buffer)) != 0;) {
            if (count < 0) return std::to_string(count);
            for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
                const auto* const entry = reinterpret_cast<const dirent64*>(buffer.data() + at);
                names.insert(std::string(entry->d_name) + ":" + std::to_string(entry->d_type) + " ");
                at += entry->d_reclen;
            }
        }
        return std::accumulate(names.begin(), names.end(), std::string());
    }

private:
    static std::string told(const struct stat& status) {
        const bool isFile = S_ISREG(status.st_mode);
        return std::to_string(status.st_mode) + (isFile ? " " + std::to_string(status.st_nlink) : "") +
               (isFile ? " " + std::to_string(status.st_size) : "");
    }
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

// There are: a file f with "hello", a folder d, and links: lf to f, ld to d, loop to itself, nowhere to none, away to
// /.
const std::array kSteps{
    // Opening, and what links do.
    STEP(open("none", O_RDONLY)), STEP(open("f/", O_RDONLY)), STEP(open("f/x", O_RDONLY)), STEP(open("", O_RDONLY)),
    STEP(open("f", kFolder)), STEP(open("lf", O_RDONLY)), STEP(open("lf", O_RDONLY | O_NOFOLLOW)),
    STEP(open("ld", kFolder | O_NOFOLLOW)), STEP(open("ld", kFolder)), STEP(open("ld/", kFolder | O_NOFOLLOW)),
    STEP(open("loop", O_RDONLY)), STEP(open("loop/x", O_RDONLY)), STEP(open("lf", O_PATH | O_NOFOLLOW)),
    STEP(open("d", O_RDWR)), STEP(open("d", O_RDONLY | O_CREAT)), STEP(open("f", kNew)), STEP(open("lf", kNew)),
    STEP(open("nowhere", kNew)), STEP(open("new/", kNew)), STEP(open("none/x", kNew)), STEP(open("..", kFolder)),
    STEP(open(std::string(256, 'x').c_str(), O_RDONLY)), STEP(open(std::string(4096, '/').c_str(), O_RDONLY)),
    STEP(open2("d", O_RDONLY, kNoLinks)), STEP(open2("ld", O_RDONLY, kNoLinks)), STEP(open2("ld", O_RDONLY, kBeneath)),
    STEP(open2("away", O_RDONLY, kBeneath)), STEP(open2("d/..", O_RDONLY, kBeneath)),
    STEP(open2("d/../..", O_RDONLY, kBeneath)), STEP(open2("/", O_RDONLY, kBeneath)),
    STEP(open2("lf", O_PATH | O_NOFOLLOW, kNoLinks)), STEP(open2("lf", O_NOFOLLOW, kNoLinks)),
    STEP(open2("f", O_RDONLY, 1U << 20U)), STEP(open("f", O_RDONLY)), STEP(opened()),
    // What is open.
    STEP(look("f", 0)), STEP(look("lf", AT_SYMLINK_NOFOLLOW)), STEP(look("lf", 0)), STEP(look("nowhere", 0)),
    STEP(look("d/", 0)), STEP(look("", 0)), STEP(told(0)), STEP(read(0)), STEP(write(0, "x")),
    STEP(kernel.fsync(b.root)), STEP(close(0)), STEP(told(0)), STEP(kernel.setLease(b.files[1], F_RDLCK)),
    // New files.
    STEP(open("n", kNew)), STEP(write(b.last(), "0123456789")), STEP(look("n", 0)),
    STEP(kernel.ftruncate(b.files.back(), 4)), STEP(kernel.flock(b.files.back(), LOCK_EX | LOCK_NB)),
    STEP(kernel.setLease(b.files.back(), F_RDLCK)), STEP(kernel.setLease(b.files.back(), F_WRLCK)),
    STEP(kernel.setLease(b.files.back(), F_UNLCK)), STEP(kernel.setLease(b.files.back(), F_UNLCK)),
    STEP(open("n", O_RDONLY)), STEP(kernel.flock(b.files.back(), LOCK_EX | LOCK_NB)), STEP(read(b.last())),
    STEP(kernel.setLease(b.files.back(), F_RDLCK)), STEP(kernel.setLease(b.files.back(), F_WRLCK)),
    STEP(write(b.last(), "x")), STEP(open("n", O_WRONLY | O_APPEND)), STEP(write(b.last(), "ab")), STEP(read(b.last())),
    STEP(read(b.last() - 1)), STEP(open("n", O_PATH)), STEP(read(b.last())), STEP(kernel.fsync(b.files.back())),
    STEP(told(b.last())), STEP(kernel.fchmod(b.files.back(), 0600)), STEP(kernel.chmodOpenFile(b.files.back(), 0640)),
    STEP(look("n", 0)), STEP(open("n", O_WRONLY | O_TRUNC)), STEP(look("n", 0)),
    // Names.
    STEP(makeFolder("d")), STEP(makeFolder("f")), STEP(makeFolder("lf")), STEP(makeFolder("e/")), STEP(makeFolder(".")),
    STEP(makeFolder("none/x")), STEP(link("n", "f")), STEP(link("n", "m")), STEP(link("d", "d2")),
    STEP(link("none", "x")), STEP(look("m", 0)), STEP(rename("n", "m")), STEP(rename("n", "m", RENAME_NOREPLACE)),
    STEP(rename("none", "m")), STEP(rename("m", "d")), STEP(rename("d", "m")), STEP(rename("d", "d/x")),
    STEP(rename("m", "d/m")), STEP(rename("e", "d")), STEP(rename("d", "e")), STEP(rename("n", "n2", RENAME_NOREPLACE)),
    STEP(rename("n2", "f")), STEP(rename("f", "new/")), STEP(rename(".", "x")), STEP(look("e/m", 0)),
    STEP(rename("lf", "lf2")), STEP(look("lf2", AT_SYMLINK_NOFOLLOW)), STEP(remove("e")),
    STEP(remove("e", AT_REMOVEDIR)), STEP(remove("f", AT_REMOVEDIR)), STEP(remove("none")),
    STEP(remove(".", AT_REMOVEDIR)), STEP(remove("f/")), STEP(remove("e/m")), STEP(open("e", kFolder)),
    STEP(remove("e", AT_REMOVEDIR)), STEP(list(b.last())), STEP(told(b.last())),
    STEP(keep(b.kernel.openat(b.files.back(), "x", kNew, 0666))),
    // Without a name.
    STEP(open(".", O_TMPFILE | O_RDWR)), STEP(open(".", O_TMPFILE | O_RDONLY)), STEP(open("f", O_TMPFILE | O_RDWR)),
    STEP(told(b.last())), STEP(kernel.linkOpenFile(b.files.back(), b.root, "f")),
    STEP(kernel.linkOpenFile(b.files.back(), b.root, "t")), STEP(look("t", 0)), STEP(remove("t")), STEP(told(b.last())),
    STEP(kernel.linkOpenFile(b.files.back(), b.root, "t")), STEP(open("f", O_RDONLY)), STEP(remove("f")),
    STEP(kernel.linkOpenFile(b.files.back(), b.root, "f")), STEP(open(".", kFolder)), STEP(list(b.last())),
    STEP(list(b.last()))};
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
    const std::vector<std::string> theirs = answersOf(linuxKernel, real.path());
    const std::vector<std::string> ours = answersOf(simulated, "/t");
    for (std::size_t i = 0; i < kSteps.size(); ++i) EXPECT_EQ(ours[i], theirs[i]);
}

}  // namespace
}  // namespace vantrell::test
