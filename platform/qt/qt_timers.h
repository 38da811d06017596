// SPDX-License-Identifier: MIT
#pragma once

#include "platform/timers.h"

namespace vantrell {

class QtTimers final : public Timers {
public:
    std::unique_ptr<Timer> create(const std::string& name) override;
};

}  // namespace vantrell
