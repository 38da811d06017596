// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace vantrell {

/// Lines that a window shows without holding them: it asks for those that are in sight. Lines only ever join at the
/// end, until all of them go together.
class LineSource {
public:
    LineSource() = default;
    LineSource(const LineSource&) = delete;
    LineSource& operator=(const LineSource&) = delete;
    virtual ~LineSource() = default;

    [[nodiscard]] virtual std::size_t size() const = 0;
    /// The line of an index below `size()`: valid UTF-8, without a line end. Never fails.
    [[nodiscard]] virtual std::string line(std::size_t index) const = 0;
};

/// Lines from `first` to `last`, both included.
struct LineRange {
    std::size_t first = 0;
    std::size_t last = 0;
};

/// How wide each byte of a line is about to be drawn, in `kWidthUnit`ths of a pixel: enough to tell how far to the
/// right the widest of very many lines reaches, where laying out each of them would take too long.
using ByteWidths = std::array<std::uint16_t, 256>;
inline constexpr unsigned kWidthUnit = 64;

}  // namespace vantrell
