// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <array>
#include <deque>
#include <string>

#include "core/frmThrottle.h"

namespace vantrell {

/// The activity lines as the box shows them. Lines only ever come, at the end.
class frmActivityLines final : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    /// `lines` are valid UTF-8 without line ends; they are taken over.
    void append(std::deque<std::string>& lines);
    void setLineSize(QSize size) { lineSize_ = size; }
    [[nodiscard]] const std::deque<std::string>& lines() const { return lines_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

private:
    std::deque<std::string> lines_;
    QSize lineSize_;
};

/// The activity box. It follows the end while the end is in sight, and stays where the reader has scrolled to
/// otherwise. Made for a million lines: they are held as bytes, decoded as they come into sight, and join the view many
/// at a time.
class frmActivityBox final : public QListView {
    Q_OBJECT

public:
    explicit frmActivityBox(QWidget* parent = nullptr);

    void appendLine(const std::string& line);
    [[nodiscard]] std::size_t lineCount() const { return model_.lines().size() + waiting_.size(); }
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
    void widenTo(double width);

    frmActivityLines model_;
    std::deque<std::string> waiting_;  // not yet in the model; all of them while the box is hidden
    std::array<double, 128> characterWidths_{};
    double otherWidth_ = 0;
    double widest_ = 0;
    bool followsEnd_ = true;
    frmThrottle take_;
};

}  // namespace vantrell
