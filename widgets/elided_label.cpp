// SPDX-License-Identifier: MIT
#include "widgets/elided_label.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

/// The text as it is drawn: names of a path that are written from right to left follow each other from left to right
/// all the same. Only the drawn text holds the marks for that.
QString inOrderOfPath(const QString& text) {
    const auto runsLeft = [](QChar c) { return c.direction() == QChar::DirR || c.direction() == QChar::DirAL; };
    if (std::none_of(text.cbegin(), text.cend(), runsLeft)) return text;
    constexpr QChar kLeftToRightMark(0x200E);
    return kLeftToRightMark + QString(text).replace(QLatin1Char('/'), QLatin1Char('/') + QString(kLeftToRightMark));
}

}  // namespace

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget* parent)
    : QLabel(parent), mode_(mode), show_([this] { setText(shownText(bytes_)); }) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* copy = new QAction(tr("Copy"), this);
    connect(copy, &QAction::triggered, this, [this] { QGuiApplication::clipboard()->setText(text()); });
    addAction(copy);
    setContextMenuPolicy(Qt::ActionsContextMenu);
}

void ElidedLabel::showBytes(const std::string& bytes) {
    if (bytes == bytes_) return;
    bytes_ = bytes;
    show_.request();
}

void ElidedLabel::prefer(const QString& text) {
    preferred_ = text;
    updateGeometry();
}

QSize ElidedLabel::sizeHint() const {
    const QSize usual = roomFor(20);
    const int preferred = fontMetrics().horizontalAdvance(preferred_) + fontMetrics().averageCharWidth();
    return preferred_.isEmpty() ? usual : QSize(preferred, usual.height());
}

QSize ElidedLabel::minimumSizeHint() const { return roomFor(8); }

QSize ElidedLabel::roomFor(int characters) const {
    const QMargins around = contentsMargins();
    return {fontMetrics().averageCharWidth() * characters + around.left() + around.right(),
            fontMetrics().height() + around.top() + around.bottom()};
}

QString ElidedLabel::elided() const { return fontMetrics().elidedText(text(), mode_, contentsRect().width()); }

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) return QLabel::event(event);
    const bool isCut = elided() != text();
    if (isCut) {
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tipText(text()), this);
    } else {
        QToolTip::hideText();
    }
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent* event) {
    QFrame::paintEvent(event);  // NOLINT(bugprone-parent-virtual-call): QLabel would draw the whole text
    QPainter painter(this);
    const Qt::Alignment where = QStyle::visualAlignment(layoutDirection(), alignment());
    painter.setLayoutDirection(Qt::LeftToRight);
    style()->drawItemText(&painter, contentsRect(), static_cast<int>(where) | Qt::TextForceLeftToRight, palette(),
                          isEnabled(), inOrderOfPath(elided()), foregroundRole());
}

}  // namespace vantrell
