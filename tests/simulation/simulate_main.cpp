// SPDX-License-Identifier: MIT
// Lets machines live through crashes and odd disks, and says which promise did not hold.
//   vantrell_simulate [--seed N [--trace]] [--seed-from N] [--lives N] [--minutes N] [--fixed] [--HAZARD ONE_IN]
// Without a seed they begin at one that nobody has chosen. --fixed: the same lives each time, for the tests. --HAZARD:
// the name of one of them (world.h); 0 leaves it out. Ends with 0 when all promises held.
#include <malloc.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "base/display_text.h"
#include "simulation/life.h"

namespace {

using namespace vantrell::test;
using vantrell::displayText;

constexpr std::uint64_t kFixedLives = 12'000;
constexpr std::uint64_t kMostBroken = 10;

struct Order {
    std::uint64_t first = std::uint64_t{std::random_device()()} << 20U;
    std::uint64_t lives = 0;
    double minutes = 1;
    bool isTraced = false;
    Hazards hazards;
};

bool take(Order& order, const std::string& word, const char* value) {
    const std::uint64_t number = std::strtoull(value, nullptr, 10);
    if (word == "--seed" || word == "--seed-from") order.first = number;
    if (word == "--seed") order.lives = 1;
    if (word == "--lives") order.lives = number;
    if (word == "--minutes") order.minutes = std::strtod(value, nullptr);
    bool isKnown = word == "--seed" || word == "--seed-from" || word == "--lives" || word == "--minutes";
    for (const HazardRow& row : kHazardRows) {
        if (word != std::string("--") + row.name) continue;
        order.hazards.*row.count = number;
        isKnown = true;
    }
    return isKnown && *value >= '0' && *value <= '9';
}

std::optional<Order> orderFrom(int count, char** words) {
    Order order;
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (word == "--trace") {
            order.isTraced = true;
        } else if (word == "--fixed") {
            order.first = 1;
            order.lives = kFixedLives;
        } else if (i + 1 == count || !take(order, word, words[++i])) {
            return std::nullopt;
        }
    }
    return order;
}

bool live(std::uint64_t seed, const Order& order, Tally& tally) {
    Life::Trace trace;
    if (order.isTraced) trace = [](const std::string& line) { std::cout << displayText(line) << "\n"; };
    Life life(seed, order.hazards, trace);
    const std::optional<std::string> broken = life.run();
    tally += life.tally();
    if (broken) std::cout << "seed " << seed << ": " << displayText(*broken) << std::endl;
    return !broken;
}

void report(const Tally& tally, double seconds, std::uint64_t broken) {
    const std::uint64_t ends = tally.kills + tally.cuts + tally.exits;
    const auto aSecond = [seconds](std::uint64_t count) {
        return std::to_string(static_cast<std::uint64_t>(static_cast<double>(count) / seconds)) + " a second";
    };
    std::cout << tally.lives << " worlds (" << aSecond(tally.lives) << "), " << ends
              << " lives from a start to an end and what it leaves (" << aSecond(ends) << "): " << tally.cuts
              << " power cuts, " << tally.kills << " kills, " << tally.exits << " ends; " << tally.passes << " passes, "
              << tally.calls << " calls, " << tally.questions << " questions.\nCalls that failed:";
    for (std::size_t i = 0; i < tally.faults.size(); ++i)
        if (tally.faults[i] != 0) std::cout << " " << nameOf(static_cast<Call>(i)) << " " << tally.faults[i];
    std::cout << "\n";
    for (std::size_t i = 1; i < kExcuses; ++i)
        std::cout << "Excused " << tally.excused[i] << " times: " << kExcuseRows[i] << ".\n";
    std::cout << broken << " broken promises." << std::endl;
}

}  // namespace

int main(int count, char** words) {
    // What is freed is soon wanted again.
    ::mallopt(M_MMAP_THRESHOLD, 1 << 28);
    ::mallopt(M_TRIM_THRESHOLD, 1 << 28);
    // Clocks change twice a year, wherever this runs.
    ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const std::optional<Order> order = orderFrom(count, words);
    if (!order) {
        std::cerr << "That is no order; the head of this program's source says which there are.\n";
        return 2;
    }
    const auto begin = std::chrono::steady_clock::now();
    const auto seconds = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    Tally tally;
    std::uint64_t broken = 0;
    for (std::uint64_t seed = order->first; broken < kMostBroken; ++seed) {
        if (order->lives != 0 ? tally.lives >= order->lives : seconds() >= order->minutes * 60) break;
        broken += live(seed, *order, tally) ? 0 : 1;
    }
    report(tally, seconds(), broken);
    return broken == 0 ? 0 : 1;
}
