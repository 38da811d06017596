// SPDX-License-Identifier: MIT
#pragma once

#include <QTreeWidget>
#include <optional>
#include <vector>

#include "passwords/password_window.h"

namespace vantrell {

/// The list of all passwords in two columns.
class frmPasswordList final : public QTreeWidget {
    Q_OBJECT

public:
    explicit frmPasswordList(QWidget* parent = nullptr);

    void showRows(const std::vector<PasswordRow>& rows);
    [[nodiscard]] std::optional<std::size_t> selectedRow() const;

    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }
    [[nodiscard]] QSize minimumSizeHint() const override;

Q_SIGNALS:
    /// A click in the list, on a row or beside them, or a row selected with the keyboard.
    void chosen();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace vantrell
