// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <string>

#include "widgets/throttle.h"

namespace vantrell {

/// One line of text that takes the room it is given: what does not fit is cut with "…" and stands whole in the tool
/// tip. Its text never changes the layout. `text()` is always the whole text; the context menu copies it.
class ElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(Qt::TextElideMode mode, QWidget* parent = nullptr);

    /// Asks the layout for enough room to show this text whole, where the window is wide enough.
    void prefer(const QString& text);
    /// Cheap when called often.
    void showBytes(const std::string& bytes);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString elided() const;
    [[nodiscard]] QSize roomFor(int characters) const;

    Qt::TextElideMode mode_;
    std::string bytes_;
    QString preferred_;
    Throttle show_;
};

}  // namespace vantrell
