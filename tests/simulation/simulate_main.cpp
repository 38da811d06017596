// SPDX-License-Identifier: MIT
// Lets machines live through crashes and odd disks, and says which promise did not hold.
//   vantrell_simulate [--seed N [--trace]] [--seed-from N] [--lives N] [--minutes N]
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "simulation/life.h"

namespace {

using namespace vantrell::test;

struct Order {
    std::uint64_t first = 0;
    std::uint64_t lives = 0;
    double minutes = 0;
    bool isTraced = false;
};

Order orderFrom(int count, char** words) {
    Order order;
    order.first = std::random_device()() | std::uint64_t{1} << 40U;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        const char* value = i + 1 < count ? words[i + 1] : "0";
        if (word == "--trace") order.isTraced = true;
        if (word == "--seed" || word == "--seed-from") order.first = std::strtoull(value, nullptr, 10);
        if (word == "--seed") order.lives = 1;
        if (word == "--lives") order.lives = std::strtoull(value, nullptr, 10);
        if (word == "--minutes") order.minutes = std::strtod(value, nullptr);
    }
    return order;
}

bool live(std::uint64_t seed, const Order& order, Tally& tally) {
    const Hazards hazards;
    Life::Trace trace;
    if (order.isTraced) trace = [](const std::string& line) { std::cout << line << "\n"; };
    Life life(seed, hazards, trace);
    const std::optional<std::string> broken = life.run();
    tally += life.tally();
    if (broken) std::cout << "seed " << seed << ": " << *broken << std::endl;
    return !broken;
}

}  // namespace

int main(int count, char** words) {
    ::setenv("TZ", "UTC", 1);
    const Order order = orderFrom(count, words);
    const auto begin = std::chrono::steady_clock::now();
    const auto seconds = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    Tally tally;
    std::uint64_t broken = 0;
    for (std::uint64_t seed = order.first; broken < 10; ++seed) {
        if (order.lives != 0 && tally.lives >= order.lives) break;
        if (order.lives == 0 && seconds() >= order.minutes * 60) break;
        broken += live(seed, order, tally) ? 0 : 1;
    }
    std::cout << tally.lives << " lives, " << static_cast<std::uint64_t>(static_cast<double>(tally.lives) / seconds())
              << " a second, from seed " << order.first << ": " << tally.runs << " runs, " << tally.passes
              << " passes, " << tally.kills << " kills, " << tally.cuts << " power cuts, " << tally.exits << " ends, "
              << tally.faults << " calls that failed, " << tally.questions << " questions, " << tally.calls
              << " calls; " << broken << " broken promises." << std::endl;
    return broken == 0 ? 0 : 1;
}
