// SPDX-License-Identifier: MIT
#include <QAccessible>
#include <QClipboard>
#include <QHelpEvent>
#include <QMenu>
#include <QToolTip>
#include <QWheelEvent>

#include "support/environment.h"
#include "whole/windows_harness.h"

namespace vantrell::test {

/// Fields and menus, and what stays of them in the settings file.
class FieldsAndMenus : public Windows {
protected:
    void SetUp() override { startProgram(); }

    /// What the field shows, and the interval that is saved, after this was typed into it.
    std::pair<std::string, std::int32_t> afterTyping(const char* text) {
        auto* field = find<MinutesField>("ctNEdit1");
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, QString::fromLatin1(text));
        QTest::keyClick(field, Qt::Key_Return);
        return {field->text().toStdString(), profile.saved().ScanIntervalMs};
    }
    void setLogging(bool off) {
        trigger("mnLogOffOn");
        if (off) EXPECT_TRUE(answer(QMessageBox::Yes).starts_with("If logging is turned off "));
        EXPECT_TRUE(waitFor([&] { return profile.saved().LoggingTurnedOff == off; }));
        EXPECT_EQ(find<QAction>("mnLogOffOn")->isChecked(), off);
    }

    const Environment config{"XDG_CONFIG_HOME", (folder / "config").c_str()};
};

TEST_F(FieldsAndMenus, TakeMinutesFromOneUp) {
    using Minutes = std::pair<std::string, std::int32_t>;
    EXPECT_EQ(afterTyping("5"), Minutes("5", 5 * 65535));
    EXPECT_EQ(afterTyping("0"), Minutes("1", 65535));
    EXPECT_EQ(afterTyping("7"), Minutes("7", 7 * 65535));
    EXPECT_EQ(afterTyping("abc"), Minutes("7", 7 * 65535)) << "letters are not taken";
    EXPECT_EQ(afterTyping("2,5"), Minutes("2.5", 163838));
    EXPECT_EQ(afterTyping("1.2.5"), Minutes("1.25", 81919)) << "there is one decimal sign";
    auto* field = find<MinutesField>("ctNEdit1");
    QAccessibleValueInterface* spoken = QAccessible::queryAccessibleInterface(field)->valueInterface();
    EXPECT_EQ(spoken->currentValue().toDouble(), 1.25);
    spoken->setCurrentValue(3.5);
    EXPECT_EQ(profile.saved().ScanIntervalMs, 229372);
    program->window().setMinutes("152.5902");
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(profile.saved().ScanIntervalMs, 229372) << "nothing was typed";
    find<QWidget>("cmdStartDir")->setFocus();
    QWheelEvent wheel({5, 5}, field->mapToGlobal(QPointF(5, 5)), {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(field, &wheel);
    EXPECT_EQ(profile.saved().ScanIntervalMs, 229372) << "the pointer only passed over it";
    EXPECT_EQ(afterTyping("9999999"), Minutes("32768", 32768 * 65535));
    QTest::keyClicks(find<QWidget>("ctNEdit1"), QStringLiteral("7"));
    QTest::keyClick(find<QWidget>("ctNEdit1"), Qt::Key_Escape);
    EXPECT_EQ(find<MinutesField>("ctNEdit1")->text(), QStringLiteral("32768"));
    QTest::keyClick(find<QWidget>("ctNEdit1"), Qt::Key_Up);
    EXPECT_EQ(profile.saved().ScanIntervalMs, 65535);
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("8"));
    find<QPushButton>("cmdExit")->click();  // without the mouse, which would take the focus away
    EXPECT_EQ(profile.saved().ScanIntervalMs, 8 * 65535);
    const std::string app = program->engine().state.AppFolder;
    EXPECT_EQ(readFile(app + "/Last Config Backup/ZEP.cfg"), readFile(app + "/ZEP.cfg"));
}

TEST_F(FieldsAndMenus, SayInTheirTipsWhatIsReadAloud) {
    auto* button = find<QWidget>("cmdSched");
    QHelpEvent asked(QEvent::ToolTip, {1, 1}, button->mapToGlobal(QPoint(1, 1)));
    QCoreApplication::sendEvent(button, &asked);
    EXPECT_TRUE(QToolTip::text().contains(button->accessibleDescription()));
}

TEST_F(FieldsAndMenus, DoWhatTheirEntriesSay) {
    trigger("mnuStartOnLoad");
    EXPECT_TRUE(waitFor([&] { return profile.saved().RunContinuallyAtStartup; }));
    trigger("mnOW");
    answer(QMessageBox::Yes);
    EXPECT_TRUE(waitFor([&] { return profile.saved().OverwriteExistingFiles; }));
    trigger("mnmax");
    EXPECT_EQ(answer(QMessageBox::No), "Would you like to run minimized now?");
    EXPECT_FALSE(profile.saved().RunNormalAtStartup);
    trigger("mnviewCL");
    EXPECT_TRUE(find<QWidget>("txtDebug")->isVisible());
    trigger("mnAddtoStartup");
    EXPECT_EQ(answer(QMessageBox::Ok), "ZEP Now Added to Start UP.  On the next boot ZEP will be take affect.");
    EXPECT_TRUE(std::filesystem::exists(folder / "config/autostart/NRD-ZEP.desktop"));
    writeFile(folder / "config/autostart/NRD-ZEP.desktop", "[Desktop Entry]\nHidden=true\n");
    find<QMenu>("mnuStartup")->popup({});
    EXPECT_TRUE(find<QAction>("startupState")->isVisible()) << "the desktop has switched it off meanwhile";
    find<QMenu>("mnuStartup")->close();
    trigger("mnuRemoveFromStartup");
    EXPECT_EQ(answer(QMessageBox::Ok), "ZEP is Now Removed Start UP. ");
    EXPECT_FALSE(std::filesystem::exists(folder / "config/autostart/NRD-ZEP.desktop"));
    trigger("mnuabout");
    opened("frmAbout").click("cmdCopyDiagnostics");
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("Toolkit: Qt ")));
}

TEST_F(FieldsAndMenus, TurnLoggingOffAndOn) {
    setLogging(true);
    EXPECT_TRUE(profile.log().ends_with(" User Turned off Logging\r\n"));
    drop("while off");
    pressStart(QMessageBox::Yes);
    ASSERT_TRUE(waitFor([&] { return countIn(profile.done) == 1 && isIdle(); }));
    EXPECT_TRUE(profile.log().ends_with(" User Turned off Logging\r\n"));
    setLogging(false);
    EXPECT_TRUE(profile.log().ends_with(" User Turned on Logging\r\n"));
    EXPECT_TRUE(hasLogged(" Encryped:  while off - Sucessful: \r\n")) << "it comes with the next save";
}

}  // namespace vantrell::test
