// SPDX-License-Identifier: MIT
#include "whole/program_harness.h"

namespace vantrell::test {

/// Fields and menus, and what stays of them in the settings file.
class FieldsAndMenus : public ProgramTest {
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
};

TEST_F(FieldsAndMenus, TakeWholeMinutesFromOneUp) {
    using Minutes = std::pair<std::string, std::int32_t>;
    EXPECT_EQ(afterTyping("5"), Minutes("5", 5 * 65535));
    EXPECT_EQ(afterTyping("0"), Minutes("1", 65535));
    EXPECT_EQ(afterTyping("7"), Minutes("7", 7 * 65535));
    EXPECT_EQ(afterTyping("abc"), Minutes("7", 7 * 65535)) << "letters are not taken";
    EXPECT_EQ(afterTyping("1,5"), Minutes("15", 15 * 65535)) << "nor is a comma";
    EXPECT_EQ(afterTyping("9999999"), Minutes("32768", 32768 * 65535));
    QTest::keyClick(find<QWidget>("ctNEdit1"), Qt::Key_Up);
    EXPECT_EQ(profile.saved().ScanIntervalMs, 65535);
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
