// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <vector>

#include "base/line_source.h"

namespace vantrell {

/// The lines of a source as a list shows them.
class frmLineModel final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit frmLineModel(const LineSource& lines) : lines_(lines) {}

    void takeNew();
    void startOver();
    void setLineSize(QSize size) { lineSize_ = size; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    const LineSource& lines_;
    int rows_ = 0;
    QSize lineSize_;
};

/// A list of very many lines: the source is asked for those in sight, nothing is laid out but them. Lines can be
/// selected and copied. The window around it says when lines have joined, and how far to the right they reach.
class LineView final : public QListView {
    Q_OBJECT

public:
    /// `lines` must outlive the view.
    explicit LineView(const LineSource& lines, QWidget* parent = nullptr);

    /// Shows the lines that have joined; `widest` is the one that reaches farthest.
    void takeNew(std::size_t widest);
    /// All lines are gone.
    void startOver();
    /// For `widestLine` of the source; other ones after each `widthsChanged`.
    [[nodiscard]] ByteWidths byteWidths() const;

    [[nodiscard]] int rows() const { return model_.rowCount(); }
    [[nodiscard]] std::vector<LineRange> selectedLines() const;
    /// The current line where there is one, else the first in sight.
    [[nodiscard]] std::size_t lineInHand() const;
    /// Selects the line alone and brings it into sight.
    void showLine(std::size_t line);

    [[nodiscard]] QSize minimumSizeHint() const override;
    void keyboardSearch(const QString&) override {}  // would decode every line there is

Q_SIGNALS:
    void copyAsked();
    void widthsChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void resizeLines();

    const LineSource& lines_;
    frmLineModel model_;
    QString widestLine_;
};

}  // namespace vantrell
