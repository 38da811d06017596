// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <exception>

namespace vantrell::test {

enum class ChildEnd { killed, finished, failed, notTraceable };

/// Runs the work in a child process and kills that when it asks the kernel for something for the nth time: between any
/// two changes of the disk, whoever makes them. `finished` when it came to its end before.
template <class Work>
ChildEnd killedAtCall(int number, Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) ::_exit(2);
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
    // Each call stops the child twice, at its beginning and at its end.
    for (int stops = 0; WIFSTOPPED(status); ++stops) {
        const bool isTime = stops == 2 * number - 1;
        if (isTime) ::kill(child, SIGKILL);
        if (!isTime && ::ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) != 0) ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
    }
    if (WIFSIGNALED(status)) return ChildEnd::killed;
    return WEXITSTATUS(status) == 0 ? ChildEnd::finished
                                    : (WEXITSTATUS(status) == 2 ? ChildEnd::notTraceable : ChildEnd::failed);
}

}  // namespace vantrell::test
