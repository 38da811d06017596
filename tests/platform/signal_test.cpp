// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <poll.h>

#include <csignal>

#include "platform/linux/signal_source.h"

namespace vantrell::test {
namespace {

// Each test runs in a process of its own, which ends with 0 when the claims hold: signals belong to a process.
constexpr int kGood = 0;
constexpr int kBad = 1;

bool isReadable(int descriptor) {
    pollfd readable{descriptor, POLLIN, 0};
    return ::poll(&readable, 1, 0) == 1;
}

[[noreturn]] void takesEachRequest() {
    SignalSource source;
    bool good = !source.takeRequest() && !isReadable(source.descriptor());
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        std::raise(signal);
        good = good && isReadable(source.descriptor()) && source.takeRequest() && !source.takeRequest();
    }
    ::_exit(good ? kGood : kBad);
}

[[noreturn]] void leavesIgnoredOnesAlone() {
    std::signal(SIGHUP, SIG_IGN);
    SignalSource source;
    std::raise(SIGHUP);
    const bool heardNothing = !source.takeRequest();
    std::raise(SIGTERM);
    ::_exit(heardNothing && source.takeRequest() ? kGood : kBad);
}

[[noreturn]] void survivesTheIgnored() {
    const SignalSource source;
    for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) std::raise(signal);
    ::_exit(kGood);
}

TEST(SignalSourceDeathTest, RequestsToEndAreTaken) { EXPECT_EXIT(takesEachRequest(), testing::ExitedWithCode(0), ""); }

TEST(SignalSourceDeathTest, WhatWasIgnoredStaysIgnored) {
    EXPECT_EXIT(leavesIgnoredOnesAlone(), testing::ExitedWithCode(0), "");
}

TEST(SignalSourceDeathTest, WritesThatFailDoNotEndUs) {
    EXPECT_EXIT(survivesTheIgnored(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vantrell::test
