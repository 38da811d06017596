// SPDX-License-Identifier: MIT
#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include "windows/window_harness.h"

namespace vantrell::test {

class MenusTest : public MainWindowTest {
protected:
    [[nodiscard]] static std::string captionOf(const QAction* entry) {
        return QString(entry->text()).remove(QLatin1Char('&')).toStdString();
    }
};

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

}  // namespace vantrell::test
