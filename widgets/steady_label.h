// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QStringList>
#include <optional>

namespace vantrell {

/// A label whose text changes often and is never cut: once wide it stays wide, so that its neighbours keep their
/// places.
class SteadyLabel final : public QLabel {
    Q_OBJECT

public:
    explicit SteadyLabel(QWidget* parent = nullptr);

    /// Keeps room for each of these texts from the beginning.
    void reserve(const QStringList& texts);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

private:
    QStringList reserved_;
    mutable std::optional<QFont> measuredFont_;
    mutable int widest_ = 0;
};

}  // namespace vantrell
