// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractSpinBox>

namespace vantrell {

/// The minutes between two passes. It counts nothing itself: it tells what the operator did and shows what it is told.
class MinutesField final : public QAbstractSpinBox {
    Q_OBJECT
    // What assistive technology is told, and by what it changes the minutes.
    Q_PROPERTY(double value READ value WRITE setValue)
    Q_PROPERTY(double minimum MEMBER minimum_ CONSTANT)
    Q_PROPERTY(double maximum MEMBER maximum_ CONSTANT)
    Q_PROPERTY(double stepSize MEMBER stepSize_ CONSTANT)

public:
    MinutesField(double minimum, double maximum, QWidget* parent = nullptr);

    void showText(const QString& text);
    [[nodiscard]] double value() const { return plainText().toDouble(); }
    /// As if it had been typed.
    void setValue(double value);

    /// What was typed counts from now on, although the field was not left.
    void finishEditing();

    void stepBy(int steps) override;
    QValidator::State validate(QString& input, int& position) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void spun(bool up, const QString& text);
    /// The text was typed and is finished; not sent again for the same text. Its decimal sign is a point.
    void edited(const QString& text);

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    [[nodiscard]] bool isDecimalSign(QChar character) const;
    /// With a point as decimal sign.
    [[nodiscard]] QString plainText() const;

    const double minimum_;
    const double maximum_;
    const double stepSize_ = 1;
    QString known_;  // what stands in the field and was told or shown already
};

}  // namespace vantrell
