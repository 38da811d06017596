// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantrell {

/// How wide each byte of a line is about to be drawn, in `kWidthUnit`ths of a pixel: enough to tell how far to the
/// right the widest of very many lines reaches, where laying out each of them would take too long.
using ByteWidths = std::array<std::uint16_t, 256>;
inline constexpr unsigned kWidthUnit = 64;

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

    /// The window says how wide bytes are in its font, before the first line joins and again with every other font.
    virtual void setByteWidths(const ByteWidths& widths) = 0;
    /// The line that is the widest by those widths; 0 while there are no lines.
    [[nodiscard]] virtual std::size_t widestLine() const = 0;
};

/// Finds the widest of the lines that join a source, and keeps none of them.
class WidestLine {
public:
    /// `widest` is the text of the line `index()`. It alone is measured again: what was the widest line in one font is
    /// not far from it in any other.
    void setByteWidths(const ByteWidths& widths, std::string_view widest) {
        widths_ = widths;
        width_ = widthOf(widest);
    }
    void add(std::size_t index, std::string_view line) {
        const std::uint64_t width = widthOf(line);
        if (width <= width_) return;
        width_ = width;
        index_ = index;
    }
    void clear() { width_ = index_ = 0; }
    [[nodiscard]] std::size_t index() const { return index_; }

private:
    [[nodiscard]] std::uint64_t widthOf(std::string_view line) const {
        std::uint64_t width = 0;
        for (const char byte : line) width += widths_[static_cast<unsigned char>(byte)];
        return width;
    }

    ByteWidths widths_{};
    std::uint64_t width_ = 0;
    std::size_t index_ = 0;
};

/// Lines from `first` to `last`, both included.
struct LineRange {
    std::size_t first = 0;
    std::size_t last = 0;
};

}  // namespace vantrell
