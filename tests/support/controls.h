// SPDX-License-Identifier: MIT
#pragma once

#include <QtTest/qtestspontaneevent.h>
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <string>

namespace vantrell::test {

/// Asks a window to close as the window manager does; whether it is willing to.
inline bool pressCloseBox(QWidget& window) {
    QCloseEvent request;
    QSpontaneKeyEvent::setSpontaneous(&request);
    QCoreApplication::instance()->notify(&window, &request);
    return request.isAccepted();
}

/// The controls of a window under their object names, and the message boxes beside it.
class Controls {
protected:
    void useWindow(QWidget& window) { window_ = &window; }

    template <class Widget>
    Widget* find(const char* name) const {
        auto* found = window_->findChild<Widget*>(QString::fromLatin1(name));
        if (found == nullptr) ADD_FAILURE() << "no control " << name;
        return found;
    }
    void click(const char* name) const { QTest::mouseClick(find<QWidget>(name), Qt::LeftButton); }
    [[nodiscard]] std::string textOf(const char* name) const { return find<QLabel>(name)->text().toStdString(); }
    [[nodiscard]] bool showsText(const char* name, const std::string& text) const {
        return QTest::qWaitFor([&] { return textOf(name) == text; });
    }
    /// The boxes that are open now.
    [[nodiscard]] QList<QMessageBox*> openBoxes() const {
        QList<QMessageBox*> found = window_->findChildren<QMessageBox*>();
        found.removeIf([](const QMessageBox* box) { return !box->isVisible(); });
        return found;
    }

private:
    QWidget* window_ = nullptr;
};

}  // namespace vantrell::test
