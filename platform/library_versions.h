// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace vantrell {

/// Something that the program runs on, and its version as it says itself, for people.
struct LibraryVersion {
    std::string name;
    std::string version;
};

/// The libraries of the engine and the system beneath them, as they are now, not as at the time of building.
[[nodiscard]] std::vector<LibraryVersion> libraryVersions();

}  // namespace vantrell
