// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QPushButton>
#include <array>

#include "core/main_window.h"
#include "widgets/elided_label.h"

namespace vantrell {

/// The four folders with their buttons, and the check box that belongs to the first of them.
class frmFolders final : public QFrame {
    Q_OBJECT

public:
    explicit frmFolders(QWidget* parent = nullptr);

    void setFolder(FolderKind kind, const Path& folder);
    /// In the place of a folder that is not set.
    void offerFolder(FolderKind kind, const Path& lost);
    /// As it is read out: "Source folder".
    [[nodiscard]] QString nameOf(FolderKind kind) const { return row(kind).label->accessibleDescription(); }
    /// The folder on which the chooser opens; empty when there is none.
    [[nodiscard]] const Path& choosingBegins(FolderKind kind) const {
        return row(kind).folder.empty() ? row(kind).lost : row(kind).folder;
    }
    /// Shows it, which is no click.
    void setIncludeSubfolders(bool included) {
        const QSignalBlocker noClick(chkActivateSF_);
        chkActivateSF_->setChecked(included);
    }

Q_SIGNALS:
    void changePressed(vantrell::FolderKind kind);
    void takeBackPressed(vantrell::FolderKind kind, const vantrell::Path& lost);
    void includeSubfoldersClicked(bool checked);

private:
    struct Row {
        ElidedLabel* label = nullptr;
        ElidedLabel* lostLabel = nullptr;  // in its place while a lost folder is offered
        QPushButton* takeBack = nullptr;
        QPushButton* button = nullptr;
        Path folder;
        Path lost;
    };

    void addRow(QGridLayout& grid, FolderKind kind, const QString& caption, const QString& labelName,
                const QString& spokenName);
    [[nodiscard]] QLayout* makeOffer(FolderKind kind, const QString& spokenName);
    void showOffer(Row& row);
    void addCheckBox(QGridLayout& grid);
    [[nodiscard]] Row& row(FolderKind kind) { return rows_[static_cast<std::size_t>(kind) - 1]; }
    [[nodiscard]] const Row& row(FolderKind kind) const { return rows_[static_cast<std::size_t>(kind) - 1]; }

    std::array<Row, 4> rows_;
    QCheckBox* chkActivateSF_ = nullptr;
};

}  // namespace vantrell
