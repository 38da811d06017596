// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractSpinBox>

namespace vantrell {

/// The minutes between two passes. It counts nothing itself: it tells what the operator did and shows what it is told.
class MinutesField final : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(int value READ value)  // what assistive technology is told

public:
    explicit MinutesField(QWidget* parent = nullptr);

    void showText(const QString& text);
    [[nodiscard]] int value() const { return text().toInt(); }

    void stepBy(int steps) override;
    QValidator::State validate(QString& input, int& position) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

Q_SIGNALS:
    void spun(bool up, const QString& text);
    /// The text was typed and is finished; not sent again for the same text.
    void edited(const QString& text);

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override { return StepUpEnabled | StepDownEnabled; }
    void keyPressEvent(QKeyEvent* event) override;

private:
    void finishEditing();

    QString known_;  // what stands in the field and was told or shown already
};

}  // namespace vantrell
