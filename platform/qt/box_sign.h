// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QWidget>

namespace vantrell {

/// What a box is about, at a glance: a question, a piece of news, or a warning. It is drawn anew for each screen. Qt's
/// own pictures have one size only, and would be blurred where a point is more than one pixel.
class BoxSign final : public QWidget {
    Q_OBJECT

public:
    explicit BoxSign(QWidget* parent);
    void showIcon(QMessageBox::Icon icon);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QMessageBox::Icon icon_ = QMessageBox::NoIcon;
};

}  // namespace vantrell
