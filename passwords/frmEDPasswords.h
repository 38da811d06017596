// SPDX-License-Identifier: MIT
#pragma once

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include "passwords/frmPasswordList.h"
#include "passwords/password_window.h"

namespace vantrell {

/// The window in which passwords are listed, added, made active and deleted. It lays out the controls, shows what it is
/// told and forwards what the operator does.
class frmEDPasswords final : public QWidget, public PasswordWindow {
    Q_OBJECT

public:
    frmEDPasswords();

    /// Who is told what the operator does; null: nobody. Must outlive the window or be taken back before.
    void setEvents(PasswordWindowEvents* events) { events_ = events; }

    [[nodiscard]] std::string enteredPassword() const override;
    void setEnteredPassword(const std::string& password) override;
    [[nodiscard]] bool isActiveSet() const override;
    void setActiveSet(bool set) override;
    void showRows(const std::vector<PasswordRow>& rows) override;
    [[nodiscard]] std::optional<std::size_t> selectedRow() const override;
    void showControls(const PasswordControls& controls) override;
    void setNote(const std::string& text) override;
    void focusPassword() override;
    void focusActive() override;
    void showWindow() override;
    void closeWindow() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void makeControls();
    void arrange();
    [[nodiscard]] QLayout* makeEntryColumn(const QGridLayout& grid);
    void connectControls();
    void show(QWidget& control, bool shown);
    void takeTypedText();
    /// Enter means whichever of Add and Edit is offered.
    void pressShownButton();
    void standBesideMainWindow();

    PasswordWindowEvents* events_ = nullptr;
    bool closesForGood_ = false;

    QLabel* lblHeading_ = nullptr;
    QLabel* lblSelect_ = nullptr;
    frmPasswordList* ListView1_ = nullptr;
    QLabel* lblEnter_ = nullptr;
    QLineEdit* txtpassword_ = nullptr;
    QLabel* lblCase_ = nullptr;
    QLabel* lblNote_ = nullptr;
    QCheckBox* chkActive_ = nullptr;
    QPushButton* cmdAdd_ = nullptr;
    QPushButton* cmdEdit_ = nullptr;
    QPushButton* cmdDelete_ = nullptr;
    QPushButton* ExitButton_ = nullptr;
};

}  // namespace vantrell
