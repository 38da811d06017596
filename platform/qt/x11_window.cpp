// SPDX-License-Identifier: MIT
#include "platform/qt/x11_window.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace vantrell {

namespace {

// WM_HINTS, as the Inter-Client Communication Conventions lay it out.
using Hints = std::array<std::uint32_t, 9>;
constexpr std::size_t kFlags = 0;
constexpr std::size_t kInitialState = 2;
constexpr std::uint32_t kHasInitialState = 1U << 1U;
constexpr std::uint32_t kNormalState = 1;

}  // namespace

void appearInNormalState(const QWidget& window) {
    const auto* application = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* x = application != nullptr ? application->connection() : nullptr;
    if (x == nullptr || window.internalWinId() == 0) return;
    const auto id = static_cast<xcb_window_t>(window.internalWinId());
    const auto cookie = xcb_get_property(x, 0, id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 0, Hints().size());
    const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
        xcb_get_property_reply(x, cookie, nullptr), &std::free);
    if (!reply || reply->format != 32 || reply->value_len < Hints().size()) return;
    Hints hints{};
    std::copy_n(static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())), hints.size(), hints.begin());
    hints[kFlags] |= kHasInitialState;
    hints[kInitialState] = kNormalState;
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, hints.size(),
                        hints.data());
}

}  // namespace vantrell
