// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

namespace vantrell::test {

/// Whether another program makes the file within twenty seconds.
inline bool appears(const std::string& path) {
    for (int i = 0; i < 20000 && !std::filesystem::exists(path); ++i) ::usleep(1000);
    return std::filesystem::exists(path);
}

}  // namespace vantrell::test
