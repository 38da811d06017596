// SPDX-License-Identifier: MIT
#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "windows/window_harness.h"

namespace vantrell::test {

class MenusTest : public MainWindowTest {
protected:
    /// As people do: a click on the menu in the bar, then one on the entry.
    void choose(const char* menuName, const char* entryName) {
        auto* menu = find<QMenu>(menuName);
        QTest::mouseClick(window.menuBar(), Qt::LeftButton, {},
                          window.menuBar()->actionGeometry(menu->menuAction()).center());
        ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(find<QAction>(entryName)).center());
        EXPECT_FALSE(menu->isVisible());
    }
    [[nodiscard]] static std::string captionOf(const QAction* entry) {
        return QString(entry->text()).remove(QLatin1Char('&')).toStdString();
    }
    static void expectUnique(const QStringList& texts) {
        QString seen;
        for (const QString& text : texts) {
            const QString key = text.section(QLatin1Char('&'), 1).left(1).toUpper();
            EXPECT_TRUE(key.isEmpty() || !seen.contains(key)) << text.toStdString();
            seen += key;
        }
    }
};

TEST_F(MenusTest, ForwardWhatIsChosen) {
    for (const char* entry : {"mnAddtoStartup", "mnuRemoveFromStartup", "mnuStartOnLoad", "mnmax"})
        choose("mnuStartup", entry);
    choose("mnuPasswordsAndFiles", "mnOW");
    for (const char* entry : {"mnviewCL", "mnuCurrentPass", "mnLogOffOn"}) choose("mnview", entry);
    QTest::mouseClick(window.menuBar(), Qt::LeftButton, {},
                      window.menuBar()->actionGeometry(find<QAction>("mnuabout")).center());
    EXPECT_EQ(events.seen, (Seen{"add", "remove", "start on load", "run normal", "overwrite", "view log", "password",
                                 "logging", "about"}));
}

TEST_F(MenusTest, CheckMarksFollowTheSettingsAndNotTheClick) {
    SettingsRecord settings;
    const std::pair<const char*, bool*> marks[] = {{"mnuStartOnLoad", &settings.RunContinuallyAtStartup},
                                                   {"mnmax", &settings.RunNormalAtStartup},
                                                   {"mnOW", &settings.OverwriteExistingFiles},
                                                   {"mnLogOffOn", &settings.LoggingTurnedOff}};
    for (const auto& [name, setting] : marks)
        for (const bool on : {true, false}) {
            *setting = on;
            window.showSettings(settings);
            find<QAction>(name)->trigger();
            EXPECT_EQ(find<QAction>(name)->isChecked(), on) << name;
        }
}

TEST_F(MenusTest, SayWhatIsWrongWithTheStartupEntry) {
    auto* said = find<QAction>("startupState");
    for (const auto& [state, text] :
         {std::pair(StartupEntry::State::switchedOff, "Added to Startup (switched off by the desktop)"),
          std::pair(StartupEntry::State::elsewhere, "Added to Startup (starts another copy)")}) {
        window.setStartupEntry(state);
        EXPECT_TRUE(said->isVisible() && !said->isEnabled());
        EXPECT_EQ(captionOf(said), text);
    }
    window.setStartupEntry(StartupEntry::State::works);
    EXPECT_FALSE(said->isVisible());
}

TEST_F(MenusTest, NoKeyHasTwoMeanings) {
    QStringList texts;
    for (const QAction* entry : window.menuBar()->actions()) texts.append(entry->text());
    for (const auto* button : window.findChildren<QAbstractButton*>()) texts.append(button->text());
    for (const auto* label : window.findChildren<QLabel*>())
        if (label->buddy() != nullptr) texts.append(label->text());
    ASSERT_GE(texts.size(), 16);
    expectUnique(texts);
    for (const auto* menu : window.findChildren<QMenu*>()) {
        QStringList entries;
        for (const QAction* entry : menu->actions()) entries.append(entry->text());
        expectUnique(entries);
    }
}

}  // namespace vantrell::test
