// SPDX-License-Identifier: MIT
#include "platform/qt/qt_message_boxes.h"

#include <QApplication>
#include <QPushButton>
#include <QStringList>
#include <algorithm>
#include <string_view>

#include "platform/qt/qt_text.h"
#include "platform/qt/text_box.h"

namespace vantrell {

namespace {

/// Each line is made visible by itself, since a path in the text may hold characters that would end the line.
QString shownLines(std::string_view text) {
    constexpr std::string_view kLineEnd = "\r\n";
    QStringList lines;
    for (std::size_t end = text.find(kLineEnd); end != std::string_view::npos; end = text.find(kLineEnd)) {
        lines.append(shownText(text.substr(0, end)));
        text.remove_prefix(end + kLineEnd.size());
    }
    lines.append(shownText(text));
    return lines.join(QLatin1Char('\n'));
}

Answer answerOf(Buttons buttons, int result) {
    if (buttons == Buttons::ok) return Answer::ok;
    if (result == QMessageBox::Yes) return Answer::yes;
    return result == QMessageBox::No ? Answer::no : Answer::dismissed;
}

void addYesNo(QMessageBox& box, bool defaultIsNo) {
    box.setIcon(QMessageBox::Question);
    box.addButton(QMessageBox::Yes)->setText(QStringLiteral("&Yes"));
    box.addButton(QMessageBox::No)->setText(QStringLiteral("&No"));
    box.setDefaultButton(defaultIsNo ? QMessageBox::No : QMessageBox::Yes);
}

void addOk(QMessageBox& box) {
    box.setIcon(QMessageBox::Information);
    box.addButton(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    box.setDefaultButton(QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
}

void bringToFront(QWidget& window) {
    window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.activateWindow();
    QApplication::alert(&window);
}

/// True when a window of the program is kept above all others, so that it would also cover a box. A modal dialog may
/// cover a box that does not belong to it as well.
bool isWindowKeptAbove() {
    if (QApplication::activeModalWidget() != nullptr) return true;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && window->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    });
}

}  // namespace

QtMessageBoxes::QtMessageBoxes(RunQueue& queue, QWidget* parent) : MessageBoxes(queue), parent_(parent) {}

QtMessageBoxes::~QtMessageBoxes() {
    for (const auto& [id, shown] : asked_) drop(shown);
    for (const Information& information : informed_) drop(information.shown);
}

QMessageBox* QtMessageBoxes::make(const Box& box) {
    // A modal dialog that blocks the parent would also block a box that belongs to the parent.
    QWidget* parent = QApplication::activeModalWidget() == nullptr ? parent_.data() : nullptr;
    auto* made =
        new TextBox(shownText(box.title.empty() ? kApplicationTitle : box.title), shownLines(box.text), parent);
    made->setAttribute(Qt::WA_DeleteOnClose);
    made->setModal(false);
    made->setWindowFlag(Qt::WindowStaysOnTopHint, isWindowKeptAbove());
    if (box.buttons == Buttons::yesNo) {
        addYesNo(*made, box.defaultIsNo);
    } else {
        addOk(*made);
    }
    return made;
}

void QtMessageBoxes::show(QMessageBox& shown) {
    if (parent_) {
        parent_->setWindowState(parent_->windowState() & ~Qt::WindowMinimized);
        parent_->show();
    }
    // When a box closes, window managers give the keyboard to its parent, even if the operator was working in another
    // window.
    if (QWidget* before = QApplication::activeWindow(); before != nullptr && before != &shown)
        QObject::connect(&shown, &QMessageBox::finished, before, [before] {
            if (before->isVisible()) before->activateWindow();
        });
    bringToFront(shown);
}

void QtMessageBoxes::open(Ticket<Answer> ticket, const Box& box) {
    QMessageBox* shown = make(box);
    asked_.emplace(ticket.number, shown);
    QObject::connect(shown, &QMessageBox::finished, &context_, [this, ticket, buttons = box.buttons](int result) {
        asked_.erase(ticket.number);
        queue().wake(ticket, answerOf(buttons, result));
    });
    show(*shown);
}

void QtMessageBoxes::showAgain(Ticket<Answer> ticket) {
    const auto found = asked_.find(ticket.number);
    if (found != asked_.end() && found->second != nullptr) bringToFront(*found->second);
}

void QtMessageBoxes::close(Ticket<Answer> ticket) {
    const auto found = asked_.find(ticket.number);
    if (found == asked_.end()) return;
    drop(found->second);
    asked_.erase(found);
}

// The box may have sent the event that is being handled at this moment, so it is only deleted when control is back in
// the event loop.
void QtMessageBoxes::drop(QMessageBox* shown) {
    if (shown == nullptr) return;
    shown->disconnect(&context_);
    shown->hide();
    shown->deleteLater();
}

void QtMessageBoxes::inform(const Box& box) {
    std::erase_if(informed_, [](const Information& one) { return !one.shown || !one.shown->isVisible(); });
    QMessageBox* fresh = make(box);
    const auto equal = std::find_if(informed_.begin(), informed_.end(), [&](const Information& one) {
        return one.title == fresh->windowTitle() && one.text == fresh->text();
    });
    if (equal != informed_.end()) {
        delete fresh;
        return show(*equal->shown);
    }
    informed_.push_back({fresh->windowTitle(), fresh->text(), fresh});
    show(*fresh);
}

bool QtMessageBoxes::isBeingRead(const std::string& text) const {
    if (QGuiApplication::applicationState() != Qt::ApplicationActive) return false;
    const QString wanted = shownLines(text);
    const auto says = [&](const QMessageBox* box) {
        return box != nullptr && box->isVisible() && box->text() == wanted;
    };
    return std::any_of(informed_.begin(), informed_.end(), [&](const auto& one) { return says(one.shown); }) ||
           std::any_of(asked_.begin(), asked_.end(), [&](const auto& one) { return says(one.second); });
}

}  // namespace vantrell
