// SPDX-License-Identifier: MIT
#include "core/active_password.h"

namespace vantrell {

Task<std::string> ActivePassword::lookUp() {
    const TaskLock::Held turn = co_await lookups_.acquire();
    password_.clear();
    const std::optional<std::string> found = co_await read_();
    password_ = found.value_or(std::string());
    co_return password_;
}

Task<std::string> ActivePassword::find() {
    const std::string known = co_await settled();
    if (!known.empty()) co_return known;
    co_return co_await lookUp();
}

Task<std::string> ActivePassword::settled() {
    const TaskLock::Held turn = co_await lookups_.acquire();
    co_return password_;
}

}  // namespace vantrell
