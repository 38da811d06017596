// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace vantrell {

/// The mode as a shape with a colour, beside the label that says it in words: a square while stopped, a disc while
/// waiting for the next pass, a triangle while a pass works.
class ModeMark final : public QWidget {
    Q_OBJECT

public:
    enum class Shape { square, disc, triangle };

    explicit ModeMark(QWidget* parent = nullptr);

    void showShape(Shape shape);
    [[nodiscard]] Shape shape() const { return shape_; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QColor colour() const;

    Shape shape_ = Shape::square;
};

}  // namespace vantrell
