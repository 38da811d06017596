// SPDX-License-Identifier: MIT
#include "core/window_geometry.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace vantrell {

namespace {

constexpr std::size_t kMostBytes = 64 * 1024;
constexpr int kMostPixels = 100'000;

}  // namespace

WindowGeometries::WindowGeometries(DataFiles& files, Path file) : files_(files), file_(std::move(file)) {
    const Result<std::string> text = files_.read(file_, kMostBytes);
    if (!text.ok()) return;
    std::string_view rest = text.value();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        take(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

// "name=left top width height"; another line is left out.
void WindowGeometries::take(std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == 0 || sign == std::string_view::npos) return;
    WindowGeometry read;
    const char* at = line.data() + sign + 1;
    const char* const end = line.data() + line.size();
    for (int* number : {&read.left, &read.top, &read.width, &read.height}) {
        const auto [stop, error] = std::from_chars(at, end, *number);
        if (error != std::errc() || *number < -kMostPixels || *number > kMostPixels) return;
        at = stop != end && *stop == ' ' ? stop + 1 : stop;
    }
    if (at == end && read.width > 0 && read.height > 0) known_[std::string(line.substr(0, sign))] = read;
}

std::optional<WindowGeometry> WindowGeometries::of(const std::string& window) const {
    const auto found = known_.find(window);
    return found == known_.end() ? std::nullopt : std::optional(found->second);
}

void WindowGeometries::keep(const std::string& window, const WindowGeometry& geometry) {
    if (of(window) == geometry) return;
    known_[window] = geometry;
    std::string text;
    for (const auto& [name, at] : known_)
        text += name + "=" + std::to_string(at.left) + " " + std::to_string(at.top) + " " + std::to_string(at.width) +
                " " + std::to_string(at.height) + "\n";
    (void)files_.writeAtomically(file_, text);
}

}  // namespace vantrell
