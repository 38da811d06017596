// SPDX-License-Identifier: MIT
#include "widgets/stored_lines.h"

#include "base/display_text.h"

namespace vantrell {

void StoredLines::append(const std::string& line) {
    const std::string shown = displayText(line);
    widest_.add(size(), shown);
    store_.append(shown);
}

void StoredLines::setByteWidths(const ByteWidths& widths) {
    widest_.setByteWidths(widths, size() == 0 ? std::string() : line(widest_.index()));
}

}  // namespace vantrell
