// SPDX-License-Identifier: MIT
#include "transport/comparing_output.h"

#include <algorithm>

namespace vantrell {

Task<Result<>> ComparingOutput::write(std::span<const std::byte> bytes) {
    piece_.resize(std::max(piece_.size(), bytes.size()));
    while (!bytes.empty()) {
        const Result<std::size_t> got = standing_->read(std::span(piece_).first(bytes.size()));
        cannotBeRead_ = !got.ok();
        if (!got.ok()) co_return got.fault();
        const auto end = piece_.begin() + static_cast<std::ptrdiff_t>(got.value());
        differs_ = got.value() == 0 || !std::equal(piece_.begin(), end, bytes.begin());
        if (differs_) co_return Fault{FaultKind::nameTaken, "another file stands there"};
        bytes = bytes.subspan(got.value());
    }
    co_return Result<>();
}

}  // namespace vantrell
