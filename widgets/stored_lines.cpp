// SPDX-License-Identifier: MIT
#include "widgets/stored_lines.h"

namespace vantrell {

void StoredLines::linesJoined() {
    for (; size_ < store_.size(); ++size_) widest_.add(size_, store_.line(size_));
}

void StoredLines::setByteWidths(const ByteWidths& widths) {
    widest_.setByteWidths(widths, size() == 0 ? std::string() : line(widest_.index()));
}

}  // namespace vantrell
