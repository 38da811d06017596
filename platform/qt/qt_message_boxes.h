// SPDX-License-Identifier: MIT
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <QWidget>
#include <unordered_map>
#include <vector>

#include "platform/message_boxes.h"

namespace vantrell {

/// Message boxes of Qt, beside the window and never in its way. While the window is minimized or hidden, a box brings
/// it back: a question nobody sees would hold up the work for ever.
class QtMessageBoxes final : public MessageBoxes {
public:
    /// `parent` is the window the boxes belong to, or null. Destroying this closes all boxes; nobody is woken.
    QtMessageBoxes(RunQueue& queue, QWidget* parent);
    ~QtMessageBoxes() override;

    void inform(const Box& box) override;
    [[nodiscard]] bool isBeingRead(const std::string& text) const override;
    void showAgain(Ticket<Answer> ticket) override;

protected:
    void open(Ticket<Answer> ticket, const Box& box) override;
    void close(Ticket<Answer> ticket) override;

private:
    struct Information {
        QString title;
        QString text;
        QPointer<QMessageBox> shown;
    };

    [[nodiscard]] QMessageBox* make(const Box& box);
    void show(QMessageBox& shown);
    void drop(QMessageBox* shown);

    QObject context_;  // nothing is told about a box any more once it is gone
    QPointer<QWidget> parent_;
    std::unordered_map<RunQueue::Id, QPointer<QMessageBox>> asked_;
    std::vector<Information> informed_;
};

}  // namespace vantrell
