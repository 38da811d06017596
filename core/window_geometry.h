// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/data_files.h"

namespace vantrell {

/// The file in AppFolder that keeps them; docs/formats.md describes it.
inline constexpr char kWindowsFileName[] = "Windows.cfg";

/// Where a window stands and how large it is, in pixels of the screen.
struct WindowGeometry {
    int left = 0, top = 0, width = 0, height = 0;
    bool operator==(const WindowGeometry&) const = default;
};

/// How the operator left the windows, kept from one run of the program to the next. That is a comfort: a file that
/// cannot be read is as good as none, and a save that fails is not reported.
class WindowGeometries {
public:
    /// `files` must outlive it.
    WindowGeometries(DataFiles& files, Path file);

    [[nodiscard]] std::optional<WindowGeometry> of(const std::string& window) const;
    /// Saved at once when it differs from what is known.
    void keep(const std::string& window, const WindowGeometry& geometry);

private:
    void take(std::string_view line);

    DataFiles& files_;
    const Path file_;
    std::map<std::string, WindowGeometry> known_;
};

}  // namespace vantrell
