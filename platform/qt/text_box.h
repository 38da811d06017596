// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QMessageBox>
#include <QTextEdit>

#include "platform/qt/box_sign.h"

namespace vantrell {

/// The text of a box, which can be selected and copied. Long words go on in the next line, and nothing is put into the
/// text for that. Assistive technology takes it for a label.
class BoxText final : public QTextEdit {
    Q_OBJECT

public:
    BoxText(const QString& text, QWidget* parent);

    /// As large as the text needs, at least so wide and within `limit`; what does not fit is scrolled to.
    void fitInto(int leastWidth, QSize limit);
};

/// A message box that shows its text as it is, character by character, and that fits on the screen however long the
/// text is. `text()` is that text. Everything else is as in QMessageBox.
class TextBox final : public QMessageBox {
    Q_OBJECT

public:
    TextBox(const QString& title, const QString& text, QWidget* parent);

protected:
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    // Closed without a button, a box has no result: QMessageBox would take one of its buttons for pressed.
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void place();
    QLabel* putInPlaceOf(const QString& name, QWidget& ours);

    BoxText* text_;
    BoxSign* sign_;
};

}  // namespace vantrell
