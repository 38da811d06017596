// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "platform/linux/signal_source.h"

namespace vantrell::test {

TEST(SignalSourceDeathTest, WritesThatFailDoNotEndUs) {
    const auto survive = [] {
        const SignalSource source;
        for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) std::raise(signal);
        ::_exit(0);
    };
    EXPECT_EXIT(survive(), testing::ExitedWithCode(0), "");
}

}  // namespace vantrell::test
