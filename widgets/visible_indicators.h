// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace vantrell {

/// Qt's own style, but with check boxes and radio buttons that can be seen on a dark desktop while they are not set:
/// there Qt 6.4 draws dark frames on dark ground.
class VisibleIndicators final : public QProxyStyle {
    Q_OBJECT

public:
    using QProxyStyle::QProxyStyle;
    /// For the whole application, where it is drawn in Qt's own style; the styles of desktops are left alone.
    static void install();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
};

}  // namespace vantrell
