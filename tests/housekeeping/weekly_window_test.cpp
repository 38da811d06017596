// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "housekeeping/frmweeklyDelete.h"

namespace vantrell::test {
namespace {

class RecordedChoices final : public WeeklyDeleteEvents {
public:
    void okPressed(const WeeklyChoice& choice) override { taken.push_back(choice); }
    void cancelPressed() override { ++cancelled; }
    std::vector<WeeklyChoice> taken;
    int cancelled = 0;
};

class WeeklyWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        window.setEvents(&events);
        window.fillLists({{"-None-", "Monday", "Wednesday"}, {"1", "2", "12"}, {"00", "01", "59"}, {"7", "8", "14"}});
        window.setClock("24/11/2026 20:41:03");
        window.select({1, 2, 0, -1, true});
        window.showCentred();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void TearDown() override { window.setEvents(nullptr); }
    template <class Widget>
    Widget* find(const char* name) {
        return window.findChild<Widget*>(QString::fromLatin1(name));
    }
    RecordedChoices events;
    frmweeklyDelete window;
};

TEST_F(WeeklyWindowTest, GivesWhatIsSelected) {
    QTest::mouseClick(find<QPushButton>("cmdOK"), Qt::LeftButton);
    QTest::keyClick(find<QComboBox>("lstDay"), Qt::Key_Down);
    QTest::keyClick(find<QComboBox>("lstMinute"), Qt::Key_End);
    QTest::keyClick(find<QComboBox>("lstDaysOld"), Qt::Key_Down);
    QTest::keyClick(&window, Qt::Key_P, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return find<QRadioButton>("optPM")->isChecked(); }));
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_EQ(events.taken, (std::vector<WeeklyChoice>{{1, 2, 0, -1, true}, {2, 2, 2, 0, false}}));
    EXPECT_TRUE(window.isVisible()) << "closed by others";
}

TEST_F(WeeklyWindowTest, EveryOtherWayOutIsCancel) {
    QTest::mouseClick(find<QPushButton>("cmdCancel"), Qt::LeftButton);
    QTest::keyClick(&window, Qt::Key_Escape);
    window.close();
    EXPECT_EQ(events.cancelled, 3);
    EXPECT_TRUE(window.isVisible() && events.taken.empty());
    window.closeWindow();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(events.cancelled, 3);
}

TEST_F(WeeklyWindowTest, TabGoesFromTopToBottom) {
    std::vector<std::string> names;
    do {
        names.push_back(window.focusWidget()->objectName().toStdString());
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    } while (window.focusWidget()->objectName() != QStringLiteral("lstDay") && names.size() < 20);
    EXPECT_EQ(names, (std::vector<std::string>{"lstDay", "lstHour", "lstMinute", "optAM", "lstDaysOld", "cmdOK",
                                               "cmdCancel"}));
}

TEST_F(WeeklyWindowTest, GrowsWithItsFont) {
    const QFont usual = QApplication::font();
    QFont twice = usual;
    twice.setPointSizeF(2 * usual.pointSizeF());
    QApplication::setFont(twice);
    window.showCentred();
    QApplication::setFont(usual);
    for (const QWidget* text : window.findChildren<QWidget*>()) {
        if (!qobject_cast<const QLabel*>(text) && !qobject_cast<const QAbstractButton*>(text)) continue;
        EXPECT_GE(text->width(), text->sizeHint().width()) << text->objectName().toStdString();
        EXPECT_GE(text->height(), text->sizeHint().height()) << text->objectName().toStdString();
    }
}

}  // namespace
}  // namespace vantrell::test
