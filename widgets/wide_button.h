// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace vantrell {

/// A button whose caption has room on both sides; in some styles long captions touch the edges.
class WideButton final : public QPushButton {
public:
    using QPushButton::QPushButton;

    [[nodiscard]] QSize sizeHint() const override { return QPushButton::sizeHint() + QSize(fontMetrics().height(), 0); }
};

}  // namespace vantrell
