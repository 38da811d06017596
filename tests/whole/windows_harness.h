// SPDX-License-Identifier: MIT
#pragma once

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>

#include "whole/program_harness.h"

namespace vantrell::test {

/// The controls of another window of the program.
class OtherWindow : public Controls {
public:
    explicit OtherWindow(QWidget& window) : window(window) { useWindow(window); }
    using Controls::click;
    using Controls::find;
    void type(const char* field, const std::string& text) const {
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        auto* found = find<QLineEdit>(field);
        found->setFocus();
        QTest::keyClicks(found, QString::fromStdString(text));
    }
    QWidget& window;
};

/// Every way that leads from the main window to another one, and what comes of it.
class Windows : public ProgramTest {
protected:
    static QWidget* shown(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->objectName() == QLatin1String(name)) return window;
        return nullptr;
    }
    OtherWindow opened(const char* name) {
        const bool came = waitFor([&] { return shown(name) != nullptr; });
        if (!came) throw std::runtime_error(std::string("no window ") + name);
        return OtherWindow(*shown(name));
    }
    static bool isGone(const char* name) {
        return waitFor([&] { return shown(name) == nullptr; });
    }
    /// Of all windows that are open.
    static void forEachControl(const std::function<void(const QWidget&)>& look) {
        for (const QWidget* control : QApplication::allWidgets())
            if (control->isVisible() && !control->isWindow()) look(*control);
    }
    static QString captionOf(const QWidget& control) {
        const auto* label = qobject_cast<const QLabel*>(&control);
        if (label != nullptr) return label->buddy() != nullptr ? label->text() : QString();
        const auto* button = qobject_cast<const QAbstractButton*>(&control);
        return button != nullptr ? button->text() : QString();
    }
    static std::string nameOf(const QWidget& control) {
        return (control.window()->objectName() + QLatin1Char(' ') + control.objectName()).toStdString();
    }
    void openAll() {
        for (const char* entry : {"mnuPasswords", "mnuHsitoryDaily", "mnuabout"}) trigger(entry);
        click("cmdSched");
        click("cmdSelectSource1");
        for (const char* name : {"frmEDPasswords", "frmHistory", "frmweeklyDelete", "frmButton"}) opened(name);
    }
    static void pressOk(const OtherWindow& picker) {
        QPushButton* ok = picker.window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
        QTest::mouseClick(ok, Qt::LeftButton);
    }
    /// With a name, a new folder of that name inside it.
    void chooseFolder(const char* button, const std::string& path, const char* create = nullptr) {
        click(button);
        const OtherWindow picker = opened("frmButton");
        qobject_cast<QFileDialog*>(&picker.window)->setDirectory(QString::fromStdString(path));
        if (create != nullptr) {
            picker.click("Command1");
            picker.type("txtName", create);
            picker.click("cmdNameOk");
        }
        pressOk(picker);
        EXPECT_TRUE(isGone("frmButton"));
    }
    /// As the active one.
    void addPassword(const std::string& password) {
        trigger("mnuPasswords");
        const OtherWindow editor = opened("frmEDPasswords");
        editor.type("txtpassword", password);
        ASSERT_TRUE(waitFor([&] { return editor.find<QWidget>("cmdAdd")->isVisible(); }));
        QTest::keyClick(editor.find<QWidget>("chkActive"), Qt::Key_Space);
        QTest::keyClick(editor.find<QWidget>("txtpassword"), Qt::Key_Return);
        ASSERT_TRUE(waitFor([&] { return program->engine().activePassword.known() == password; }));
        editor.click("ExitButton");
        EXPECT_TRUE(isGone("frmEDPasswords"));
    }
    std::string currentPassword() {
        trigger("mnuCurrentPass");
        return answer(QMessageBox::Ok);
    }
    void exitProgram() {
        QTimer::singleShot(0, &program->window(), [this] { click("cmdExit"); });
        EXPECT_EQ(QApplication::exec(), 0);
    }
    void backUp() {
        for (int presses = 0; presses < 2; ++presses) trigger("mnBackup");
        EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(profile.data + "/Config Backup/EDPasswords.mdb"); }))
            << "before any answer";
        EXPECT_EQ(answer(QMessageBox::Ok), "Current config file is backed up.");
        EXPECT_EQ(answer(QMessageBox::Ok), "Password file is backed up.");
        EXPECT_TRUE(openBoxes().isEmpty());
    }
};

}  // namespace vantrell::test
