// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <array>
#include <string>

#include "platform/line_store.h"
#include "widgets/throttle.h"

namespace vantrell {

/// The activity lines as the box shows them. Lines only ever come, at the end.
class frmActivityLines final : public QAbstractListModel {
    Q_OBJECT

public:
    explicit frmActivityLines(const LineStore& lines) : lines_(lines) {}

    /// Takes in what has joined the store.
    void takeNew();
    void setLineSize(QSize size) { lineSize_ = size; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    const LineStore& lines_;
    int rows_ = 0;
    QSize lineSize_;
};

/// The activity box. It follows the end while the end is in sight, and stays where the reader has scrolled to
/// otherwise. Made for a million lines: they are held by the store, decoded as they come into sight, and join the view
/// many at a time.
class ActivityBox final : public QListView {
    Q_OBJECT

public:
    /// `lines` must outlive the box.
    explicit ActivityBox(LineStore& lines, QWidget* parent = nullptr);

    void appendLine(const std::string& line);
    [[nodiscard]] std::size_t lineCount() const { return lines_.size(); }
    [[nodiscard]] QString selectedText() const;
    void copySelected() const;

    [[nodiscard]] QSize minimumSizeHint() const override;
    void keyboardSearch(const QString&) override {}  // would decode every line there is

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void takeWaiting();
    void measureCharacters();
    [[nodiscard]] double widthOf(const std::string& line) const;
    void measureLine(const std::string& line);
    void resizeLines();

    LineStore& lines_;
    frmActivityLines model_;
    std::string widestLine_;
    std::array<double, 128> characterWidths_{};
    double otherWidth_ = 0;
    double widest_ = 0;
    bool followsEnd_ = true;
    Throttle take_;
};

}  // namespace vantrell
