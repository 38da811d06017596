// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace vantrell::test {

/// The one source of chance in a simulated life: the same seed, the same life. (The generator is splitmix64.)
class Chance {
public:
    explicit Chance(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBU;
        return mixed ^ (mixed >> 31U);
    }
    /// 0 … limit - 1; 0 when there is no limit to stay below.
    std::uint64_t below(std::uint64_t limit) { return limit == 0 ? 0 : next() % limit; }
    /// True once in `count` times; never for 0.
    bool oneIn(std::uint64_t count) { return count != 0 && below(count) == 0; }
    /// One of a list that is not empty.
    template <class List>
    auto& pick(List& list) {
        return list[static_cast<std::size_t>(below(list.size()))];
    }
    /// A seed for a generator of its own.
    std::uint64_t split() { return next(); }

private:
    std::uint64_t state_;
};

}  // namespace vantrell::test
