// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vantrell {

/// Something that the program runs on, and its version as it says itself, for people.
struct LibraryVersion {
    std::string name;
    std::string version;
};

// Each told by the room that works with it, as it is now, not as at the time of building.
[[nodiscard]] LibraryVersion cipherLibraryVersion();
[[nodiscard]] LibraryVersion databaseLibraryVersion();
/// The library by which files are flushed, and the system beneath everything.
[[nodiscard]] std::vector<LibraryVersion> systemVersions();

/// All of them, in the order in which they are shown.
[[nodiscard]] inline std::vector<LibraryVersion> libraryVersions() {
    std::vector<LibraryVersion> versions{cipherLibraryVersion(), databaseLibraryVersion()};
    for (LibraryVersion& version : systemVersions()) versions.push_back(std::move(version));
    return versions;
}

}  // namespace vantrell
