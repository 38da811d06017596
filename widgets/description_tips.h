// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

namespace vantrell {

/// Shows the accessible description of a button or field as its tool tip, where it has no tip of its own: what is read
/// aloud can be read by everybody. Works for all windows of the application while it lives.
class DescriptionTips final : public QObject {
    Q_OBJECT

public:
    DescriptionTips();

    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace vantrell
