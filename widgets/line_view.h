// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <vector>

#include "base/line_source.h"
#include "widgets/throttle.h"

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

/// A list made for a million lines: the source is asked for those in sight, and new ones join the list many at a time.
/// Lines can be selected and copied. The window around it says when lines have joined the source.
class LineView final : public QListView {
    Q_OBJECT

public:
    /// `lines` must outlive the view.
    explicit LineView(LineSource& lines, QWidget* parent = nullptr);

    /// From now on the last line stays in sight while the reader has not scrolled away from it. To be called once.
    void followEnd();

    /// To be called whenever lines have joined the source, however often that is. A view that is hidden takes them in
    /// when it is shown.
    void linesJoined();
    /// Takes them in at once.
    void takeNew();
    /// To be called when all lines have left the source.
    void startOver();

    [[nodiscard]] int rows() const { return model_.rowCount(); }
    /// In the order of the lines.
    [[nodiscard]] std::vector<LineRange> selectedLines() const;
    /// The lines themselves, a line feed between them.
    [[nodiscard]] QString selectedText() const;
    /// The current line where there is one, else the first in sight.
    [[nodiscard]] std::size_t lineInHand() const;
    /// Selects the line alone and brings it into sight.
    void showLine(std::size_t line);

    [[nodiscard]] QSize minimumSizeHint() const override;
    void keyboardSearch(const QString&) override {}  // would decode every line there is

Q_SIGNALS:
    /// The operator wants the selected lines on the clipboard; there is at least one.
    void copyAsked();
    /// Lines that had joined have been taken in, but for those that `takeNew` took.
    void linesTaken();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void addCopyMenu();
    void askForCopy();
    void takeWaiting();
    void measureBytes();
    void resizeLines();

    LineSource& lines_;
    frmLineModel model_;
    QString widestText_;
    std::size_t widestLine_ = 0;
    bool isAtEnd_ = true;
    Throttle take_;
};

}  // namespace vantrell
