// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vantrell {

/// Lines that only ever come, at the end, for as long as the program runs. Any of them can be had again. They are valid
/// UTF-8 as people are shown it, without line ends.
class LineStore {
public:
    LineStore() = default;
    LineStore(const LineStore&) = delete;
    LineStore& operator=(const LineStore&) = delete;
    virtual ~LineStore() = default;

    /// Never fails: what cannot be put elsewhere stays in memory.
    virtual void append(std::string_view line) = 0;
    [[nodiscard]] virtual std::size_t size() const = 0;
    /// The line of this index, below `size()`. One that cannot be read again is replaced by words that say so.
    [[nodiscard]] virtual std::string line(std::size_t index) const = 0;
};

}  // namespace vantrell
