// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "platform/linux/linux_fd.h"
#include "platform/linux/linux_kernel.h"
#include "platform/linux/posix_host.h"
#include "platform/linux/signal_source.h"
#include "rig/temporary_folder.h"
#include "support/appears.h"
#include "support/environment.h"

namespace vantrell::test {
namespace {

TEST(PosixHost, TheProfileFolderComesFromTheEnvironment) {
    const PosixHost host;
    EXPECT_TRUE(std::filesystem::exists(host.programFolder() + "/platform_test"));
    const Environment home("HOME", "/home/x");
    const Environment all("ALLUSERSPROFILE", "/all");
    EXPECT_EQ(host.profileFolder(), "/all");
    const Environment unset("ALLUSERSPROFILE", "");
    const Environment data("XDG_DATA_HOME", "/data");
    EXPECT_EQ(host.profileFolder(), "/data");
    const Environment relative("XDG_DATA_HOME", "data");
    EXPECT_EQ(host.profileFolder(), "/home/x/.local/share");
    const Environment homeless("HOME", nullptr);
    EXPECT_TRUE(host.profileFolder().starts_with("/"));
    EXPECT_TRUE(host.profileFolder().ends_with("/.local/share"));
}

// Says what it finds true of itself, in a file beside it.
constexpr char kInquisitiveProgram[] = R"sh(#!/bin/sh
cd "${0%/*}"
exec 3> part
[ "$(cut -d' ' -f6 /proc/$$/stat)" = $$ ] && echo "own session" >&3
[ ! -e /proc/$$/fd/57 ] && echo "no descriptor" >&3
[ $((0x$(sed -n 's/^SigIgn:[[:space:]]*//p' /proc/$$/status) & 0x1000)) = 0 ] && echo "no ignored signal" >&3
[ $((0x$(sed -n 's/^SigBlk:[[:space:]]*//p' /proc/$$/status) & 0x4000)) = 0 ] && echo "no blocked signal" >&3
readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2 >&3
mv part report
)sh";

TEST(PosixHost, AStartedProgramInheritsNothingOfOurs) {
    const TemporaryFolder folder;
    writeFile(folder / "program", kInquisitiveProgram);
    std::filesystem::permissions(folder / "program", std::filesystem::perms{0700});
    const LinuxFd inheritable(::dup2(STDERR_FILENO, 57));
    const auto pipeBefore = std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigset_t maskBefore;
    ::sigemptyset(&blocked);
    ::sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    PosixHost host;
    const bool started = host.startProgram(folder / "program");
    ::pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
    std::signal(SIGPIPE, pipeBefore);
    ASSERT_TRUE(started);
    // The program moves its standard output for the one command that looks at it.
    ASSERT_TRUE(appears(folder / "report"));
    const std::string report = readFile(folder / "report");
    EXPECT_TRUE(report.starts_with("own session\nno descriptor\nno ignored signal\nno blocked signal\n/dev/null\n"))
        << report;
    EXPECT_TRUE(report.ends_with("/dev/null\n")) << report;
}

// What a network file system answers: only a file that is open for writing can be locked.
class NetworkKernel final : public LinuxKernel {
public:
    int flock(int file, int operation) override {
        if (locksAreGone) return ENOLCK;
        return (::fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY ? EBADF : LinuxKernel::flock(file, operation);
    }
    bool locksAreGone = false;
};

TEST(PosixInstanceLock, HoldsOnNetworkFileSystemsToo) {
    using Outcome = InstanceLock::Outcome;
    const TemporaryFolder folder;
    NetworkKernel kernel;
    PosixInstanceLock other(kernel);
    {
        PosixInstanceLock first(kernel);
        EXPECT_EQ(first.tryLock(folder.path()), Outcome::locked);
        EXPECT_EQ(other.tryLock(folder.path()), Outcome::anothers);
    }
    EXPECT_EQ(std::filesystem::status(folder / "instance.lock").permissions(), std::filesystem::perms{0600});
    EXPECT_EQ(other.tryLock(folder.path()), Outcome::locked);
    kernel.locksAreGone = true;
    EXPECT_EQ(PosixInstanceLock(kernel).tryLock(folder.path()), Outcome::impossible);
    EXPECT_EQ(PosixInstanceLock(kernel).tryLock(folder / "missing"), Outcome::impossible);
}

TEST(SignalSourceDeathTest, WritesThatFailDoNotEndUs) {
    const auto survive = [] {
        const SignalSource source;
        for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) std::raise(signal);
        ::_exit(0);
    };
    EXPECT_EXIT(survive(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vantrell::test
