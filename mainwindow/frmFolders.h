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
    /// As it is read out: "Source folder".
    [[nodiscard]] QString nameOf(FolderKind kind) const { return row(kind).label->accessibleDescription(); }
    [[nodiscard]] const Path& folder(FolderKind kind) const { return row(kind).folder; }
    /// Shows it, which is no click.
    void setIncludeSubfolders(bool included) {
        const QSignalBlocker noClick(chkActivateSF_);
        chkActivateSF_->setChecked(included);
    }

Q_SIGNALS:
    void changePressed(vantrell::FolderKind kind);
    void includeSubfoldersClicked(bool checked);

private:
    struct Row {
        ElidedLabel* label = nullptr;
        QPushButton* button = nullptr;
        Path folder;
    };

    void addRow(QGridLayout& grid, FolderKind kind, const QString& caption, const QString& labelName,
                const QString& spokenName);
    void addCheckBox(QGridLayout& grid);
    [[nodiscard]] Row& row(FolderKind kind) { return rows_[static_cast<std::size_t>(kind) - 1]; }
    [[nodiscard]] const Row& row(FolderKind kind) const { return rows_[static_cast<std::size_t>(kind) - 1]; }

    std::array<Row, 4> rows_;
    QCheckBox* chkActivateSF_ = nullptr;
};

}  // namespace vantrell
