// SPDX-License-Identifier: MIT
#include "widgets/minutes_field.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QWheelEvent>
#include <algorithm>
#include <cstdlib>

namespace vantrell {

namespace {

// Every stored interval can be shown: five digits, a decimal sign and four decimals.
constexpr int kCharacters = 10;

}  // namespace

MinutesField::MinutesField(double minimum, double maximum, QWidget* parent)
    : QAbstractSpinBox(parent), minimum_(minimum), maximum_(maximum) {
    setAlignment(Qt::AlignRight);
    setFocusPolicy(Qt::StrongFocus);  // not by the wheel
    lineEdit()->setMaxLength(kCharacters);
    connect(this, &QAbstractSpinBox::editingFinished, this, &MinutesField::finishEditing);
}

void MinutesField::showText(const QString& text) {
    known_ = text;
    if (lineEdit()->text() != text) lineEdit()->setText(text);
}

void MinutesField::stepBy(int steps) {
    for (int step = 0; step < std::abs(steps); ++step) Q_EMIT spun(steps > 0, plainText());
}

void MinutesField::setValue(double value) {
    lineEdit()->setText(QString::number(value, 'f', QLocale::FloatingPointShortest));
    finishEditing();
}

bool MinutesField::isDecimalSign(QChar character) const {
    return character == QLatin1Char('.') || character == QLatin1Char(',') || character == locale().decimalPoint();
}

QString MinutesField::plainText() const {
    QString plain = text();
    for (QChar& character : plain)
        if (isDecimalSign(character)) character = QLatin1Char('.');
    return plain;
}

void MinutesField::finishEditing() {
    const QString typed = text();
    if (typed == known_) return;
    known_ = typed;
    Q_EMIT edited(plainText());
}

QValidator::State MinutesField::validate(QString& input, int&) const {
    const auto isDigit = [](QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); };
    const auto isSign = [this](QChar character) { return isDecimalSign(character); };
    const auto signs = std::count_if(input.cbegin(), input.cend(), isSign);
    const auto digits = std::count_if(input.cbegin(), input.cend(), isDigit);
    if (signs > 1 || signs + digits != input.size()) return QValidator::Invalid;
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

// The wheel that scrolls through the window passes over the field, and the minutes would change unseen.
void MinutesField::wheelEvent(QWheelEvent* event) {
    hasFocus() ? QAbstractSpinBox::wheelEvent(event) : event->ignore();
}

QSize MinutesField::sizeHint() const {
    const QSize empty = QAbstractSpinBox::sizeHint();
    return {empty.width() + fontMetrics().horizontalAdvance(QString(kCharacters, QLatin1Char('0'))), empty.height()};
}

}  // namespace vantrell
