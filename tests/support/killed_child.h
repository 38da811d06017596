// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <exception>
#include <iterator>

namespace vantrell::test {

/// Whether a traced process stands at the beginning of a call for something other than memory, for which the number of
/// calls varies.
inline bool isAtCall(pid_t child) {
    __ptrace_syscall_info info{};
    // The size travels in a parameter that is an address for other requests.
    void* const size = reinterpret_cast<void*>(sizeof info);
    if (::ptrace(PTRACE_GET_SYSCALL_INFO, child, size, &info) <= 0) return false;
    if (info.op != PTRACE_SYSCALL_INFO_ENTRY) return false;
    constexpr unsigned long kMemory[] = {SYS_mmap, SYS_munmap, SYS_mremap, SYS_mprotect, SYS_madvise, SYS_brk};
    return std::find(std::begin(kMemory), std::end(kMemory), info.entry.nr) == std::end(kMemory);
}

/// Runs the work in a child process and kills that when it asks the kernel for something for the nth time: between any
/// two changes of the disk, whoever makes them. False when it came to its end before. Where processes cannot be traced,
/// nothing is ever killed.
template <class Work>
bool isKilledAtCall(int number, Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(0);
        ::raise(SIGSTOP);
        try {
            work();
        } catch (const std::exception&) {
            ::_exit(1);
        }
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    // Without it, stops at calls are not told from others.
    ::ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD);
    for (int calls = 0; WIFSTOPPED(status);) {
        if (isAtCall(child)) ++calls;
        if (calls == number || ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
    }
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0) << "the work has failed";
    return WIFSIGNALED(status);
}

}  // namespace vantrell::test
