// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace vantrell {

/// A label whose text changes often and is never cut: once wide it stays wide, so that its neighbours keep their
/// places.
class frmSteadyLabel final : public QLabel {
    Q_OBJECT

public:
    explicit frmSteadyLabel(QWidget* parent = nullptr);

    /// Keeps room for this text from the beginning.
    void reserve(const QString& text);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    QString reserved_;
    mutable QFont measuredFont_;
    mutable int widest_ = 0;
};

}  // namespace vantrell
