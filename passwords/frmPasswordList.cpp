// SPDX-License-Identifier: MIT
#include "passwords/frmPasswordList.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>

#include "platform/qt/qt_text.h"

namespace vantrell {

namespace {

constexpr int kShownRows = 5;
constexpr int kShownCharacters = 32;  // as long as a key is

}  // namespace

frmPasswordList::frmPasswordList(QWidget* parent) : QTreeWidget(parent) {
    setHeaderLabels({tr("Password"), tr("Active")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setSelectionMode(SingleSelection);
    setTabKeyNavigation(false);
    header()->setStretchLastSection(false);
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
}

void frmPasswordList::showRows(const std::vector<PasswordRow>& rows) {
    clear();
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(rows.size()));
    for (const PasswordRow& row : rows) {
        const QString password = shownText(row.password);
        auto* item = new QTreeWidgetItem(QStringList{password, shownText(row.activeText)});
        item->setToolTip(0, tipText(password));  // whole, where the column cuts it
        items.append(item);
    }
    addTopLevelItems(items);
}

std::optional<std::size_t> frmPasswordList::selectedRow() const {
    const QList<QTreeWidgetItem*> selected = selectedItems();
    if (selected.isEmpty()) return std::nullopt;
    return static_cast<std::size_t>(indexOfTopLevelItem(selected.front()));
}

QSize frmPasswordList::minimumSizeHint() const {
    const int line = fontMetrics().height() + 4;
    return {fontMetrics().averageCharWidth() * kShownCharacters + header()->sectionSizeHint(1),
            header()->sizeHint().height() + kShownRows * line + 2 * frameWidth()};
}

void frmPasswordList::mouseReleaseEvent(QMouseEvent* event) {
    QTreeWidget::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton) Q_EMIT chosen();
}

void frmPasswordList::keyPressEvent(QKeyEvent* event) {
    const auto before = selectedRow();
    QTreeWidget::keyPressEvent(event);
    const bool isClick =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const auto after = selectedRow();
    if (after && (isClick || after != before)) Q_EMIT chosen();
}

}  // namespace vantrell
