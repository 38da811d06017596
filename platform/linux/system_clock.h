// SPDX-License-Identifier: MIT
#pragma once

#include "platform/clock.h"

namespace vantrell {

class SystemClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override { return std::chrono::system_clock::now(); }
};

}  // namespace vantrell
