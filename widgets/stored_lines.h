// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "base/line_source.h"
#include "platform/line_store.h"

namespace vantrell {

/// The lines of a store as a list shows them.
class StoredLines final : public LineSource {
public:
    /// `store` must outlive this. All lines must join it through here.
    explicit StoredLines(LineStore& store) : store_(store) {}

    /// `line` may hold any bytes; it is kept as people are shown it (control characters and invalid bytes as `\xNN`).
    void append(const std::string& line);

    [[nodiscard]] std::size_t size() const override { return store_.size(); }
    [[nodiscard]] std::string line(std::size_t index) const override { return store_.line(index); }
    void setByteWidths(const ByteWidths& widths) override;
    [[nodiscard]] std::size_t widestLine() const override { return widest_.index(); }

private:
    LineStore& store_;
    WidestLine widest_;
};

}  // namespace vantrell
