// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

#include "base/line_source.h"
#include "platform/line_store.h"

namespace vantrell {

/// The lines of a store as a list shows them.
class StoredLines final : public LineSource {
public:
    /// `store` must outlive this.
    explicit StoredLines(const LineStore& store) : store_(store) {}

    /// Takes in the lines that have joined the store since the last call.
    void linesJoined();

    [[nodiscard]] std::size_t size() const override { return size_; }
    [[nodiscard]] std::string line(std::size_t index) const override { return store_.line(index); }
    void setByteWidths(const ByteWidths& widths) override;
    [[nodiscard]] std::size_t widestLine() const override { return widest_.index(); }

private:
    const LineStore& store_;
    std::size_t size_ = 0;
    WidestLine widest_;
};

}  // namespace vantrell
