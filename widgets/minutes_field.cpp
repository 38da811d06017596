// SPDX-License-Identifier: MIT
#include "widgets/minutes_field.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <cstdlib>

namespace vantrell {

namespace {

// The range allows every number that may be shown or typed, up to 24 x 65535.
constexpr int kDigits = 7;

}  // namespace

MinutesField::MinutesField(QWidget* parent) : QAbstractSpinBox(parent) {
    setAlignment(Qt::AlignRight);
    lineEdit()->setMaxLength(kDigits);
    connect(this, &QAbstractSpinBox::editingFinished, this, &MinutesField::finishEditing);
}

void MinutesField::showText(const QString& text) {
    known_ = text;
    if (lineEdit()->text() != text) lineEdit()->setText(text);
}

void MinutesField::stepBy(int steps) {
    for (int step = 0; step < std::abs(steps); ++step) Q_EMIT spun(steps > 0, text());
}

void MinutesField::finishEditing() {
    const QString typed = text();
    if (typed == known_) return;
    known_ = typed;
    Q_EMIT edited(typed);
}

QValidator::State MinutesField::validate(QString& input, int&) const {
    const auto isDigit = [](QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); };
    if (!std::all_of(input.cbegin(), input.cend(), isDigit)) return QValidator::Invalid;
    return QValidator::Acceptable;
}

void MinutesField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && text() != known_) {
        lineEdit()->setText(known_);
        selectAll();
        return;
    }
    QAbstractSpinBox::keyPressEvent(event);
}

QSize MinutesField::sizeHint() const {
    const QSize empty = QAbstractSpinBox::sizeHint();
    return {empty.width() + fontMetrics().horizontalAdvance(QString(kDigits, QLatin1Char('0'))), empty.height()};
}

}  // namespace vantrell
