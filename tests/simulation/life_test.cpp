// SPDX-License-Identifier: MIT
#include "simulation/life.h"

#include <gtest/gtest.h>

#include "support/time_zone.h"

namespace vantrell::test {
namespace {

std::vector<std::string> traceOf(std::uint64_t seed) {
    std::vector<std::string> lines;
    Life life(seed, {}, [&lines](const std::string& line) { lines.push_back(line); });
    static_cast<void>(life.run());
    return lines;
}

TEST(Life, IsTheSameForTheSameSeed) {
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    std::size_t calls = 0;
    for (std::uint64_t seed = 1; seed <= 40; ++seed) {
        const std::vector<std::string> once = traceOf(seed);
        // What lies where in memory must not matter.
        const std::vector<std::string> heap(seed, std::string(seed * 100, 'x'));
        ASSERT_EQ(once, traceOf(seed)) << seed;
        calls += once.size();
    }
    EXPECT_GT(calls, 10'000U) << "the lives are about nothing";
}

}  // namespace
}  // namespace vantrell::test
