// SPDX-License-Identifier: MIT
#include "platform/qt/text_box.h"

#include <QAccessibleWidget>
#include <QCloseEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>
#include <algorithm>
#include <cmath>
#include <memory>

namespace vantrell {

namespace {

constexpr int kCharactersInALine = 76;

/// Screen readers read the labels of a box out when it opens, but not its fields.
class Label final : public QAccessibleWidget {
public:
    explicit Label(BoxText* text) : QAccessibleWidget(text, QAccessible::StaticText) {}

    [[nodiscard]] QString text(QAccessible::Text which) const override {
        if (which != QAccessible::Name) return QAccessibleWidget::text(which);
        return static_cast<const BoxText*>(widget())->toPlainText();
    }
    [[nodiscard]] int childCount() const override { return 0; }
};

QAccessibleInterface* asLabel(const QString& className, QObject* object) {
    const bool isText = className == QLatin1String(BoxText::staticMetaObject.className());
    return isText ? new Label(static_cast<BoxText*>(object)) : nullptr;
}

}  // namespace

BoxText::BoxText(const QString& text, QWidget* parent) : QTextEdit(parent) {
    QAccessible::installFactory(asLabel);
    setObjectName(QStringLiteral("boxText"));
    setReadOnly(true);
    setFrameShape(NoFrame);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    QTextOption option = document()->defaultTextOption();
    option.setTextDirection(Qt::LeftToRight);  // a line may begin with a path
    document()->setDefaultTextOption(option);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::ClickFocus);
    viewport()->setAutoFillBackground(false);
    document()->setDocumentMargin(0);
    setPlainText(text);
}

void BoxText::fitInto(int leastWidth, QSize limit) {
    const auto whole = [](double pixels) { return static_cast<int>(std::ceil(pixels)); };
    // The document that is shown is always as wide as the field, so that it is a copy that can be measured.
    const std::unique_ptr<QTextDocument> copy(document()->clone());
    copy->setDocumentMargin(0);
    copy->setTextWidth(-1);
    int width = std::min(std::max(whole(copy->idealWidth()) + 1, leastWidth), limit.width());
    copy->setTextWidth(width);
    int height = whole(copy->size().height());
    const bool isCut = height > limit.height();
    if (isCut) {
        width += style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
        height = limit.height();
    }
    setFocusPolicy(isCut ? Qt::StrongFocus : Qt::ClickFocus);
    setVerticalScrollBarPolicy(isCut ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    setFixedSize(width, height);
}

TextBox::TextBox(const QString& title, const QString& text, QWidget* parent)
    : QMessageBox(parent), text_(new BoxText(text, this)), sign_(new BoxSign(this)) {
    setWindowTitle(title);
    setTextFormat(Qt::PlainText);
    setText(text);
    place();
}

// In the places of the labels that Qt made for text and icon; Qt lays everything out anew whenever the icon or style
// changes.
void TextBox::place() {
    if (QLabel* label = putInPlaceOf(QStringLiteral("qt_msgbox_label"), *text_)) label->raise();  // it is read out last
    sign_->showIcon(icon());
    putInPlaceOf(QStringLiteral("qt_msgboxex_icon_label"), *sign_);
    sign_->setVisible(icon() != NoIcon);
}

QLabel* TextBox::putInPlaceOf(const QString& name, QWidget& ours) {
    auto* label = findChild<QLabel*>(name);
    if (label == nullptr || layout()->indexOf(label) < 0) return nullptr;
    delete layout()->replaceWidget(label, &ours, Qt::FindDirectChildrenOnly);
    label->hide();
    return label;
}

void TextBox::showEvent(QShowEvent* event) {
    place();
    const QSize room = screen()->availableSize();
    const int line = std::min(fontMetrics().averageCharWidth() * kCharactersInALine, room.width() * 2 / 3);
    // In a narrow box the frame, with its icon and buttons, would cut the title.
    const int title = fontMetrics().horizontalAdvance(windowTitle()) + 8 * fontMetrics().averageCharWidth();
    text_->fitInto(title, {line, room.height() * 3 / 5});
    QMessageBox::showEvent(event);
}

void TextBox::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Cancel)) return done(NoButton);
    QMessageBox::keyPressEvent(event);
}

void TextBox::closeEvent(QCloseEvent* event) {
    if (isVisible()) done(NoButton);
    event->accept();
}

void TextBox::changeEvent(QEvent* event) {
    QMessageBox::changeEvent(event);
    place();
}

}  // namespace vantrell
