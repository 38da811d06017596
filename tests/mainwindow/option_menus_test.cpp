// SPDX-License-Identifier: MIT
#include "mainwindow/option_menus.h"

#include <gtest/gtest.h>

#include "core/settings_format.h"
#include "support/pass_bench.h"

namespace vantrell::test {
namespace {

struct OptionPath {
    const char* name;
    bool continually, normal;            // before
    void (OptionMenus::*click)();        // what is clicked
    std::vector<Answer> answers;         // to the questions, in order
    bool continuallyAfter, normalAfter;  // after
    std::size_t informed;                // boxes with an OK
    bool visibleAfter;                   // the window, which was hidden before
};

void PrintTo(const OptionPath& path, std::ostream* out) { *out << path.name; }

struct OptionMenusTest : ::testing::Test {
    PassBench bench;
};

class OptionPaths : public OptionMenusTest, public ::testing::WithParamInterface<OptionPath> {};

TEST_P(OptionPaths, EndsWhereTheAnswersLead) {
    const OptionPath& path = GetParam();
    bench.state.settings.RunContinuallyAtStartup = path.continually;
    bench.state.settings.RunNormalAtStartup = path.normal;
    for (const Answer answer : path.answers) bench.boxes.answerNext(answer);
    (bench.engine.optionMenus.*path.click)();
    bench.settle();
    EXPECT_EQ(bench.state.settings.RunContinuallyAtStartup, path.continuallyAfter);
    EXPECT_EQ(bench.state.settings.RunNormalAtStartup, path.normalAfter);
    EXPECT_TRUE(path.continuallyAfter || path.normalAfter || (!path.continually && !path.normal))
        << "a program that starts hidden also processes by itself";
    EXPECT_EQ(bench.boxes.asked.size(), path.answers.size());
    EXPECT_EQ(bench.boxes.informed.size(), path.informed);
    EXPECT_EQ(bench.window.visible, path.visibleAfter);
    for (const Box& box : bench.boxes.asked) EXPECT_EQ(box.title, "Running Options");
    if (path.continually == path.continuallyAfter && path.normal == path.normalAfter) return;
    EXPECT_EQ(readFile(bench.settingsFile), formatSettings(bench.state.settings));
    EXPECT_EQ(bench.window.shown, bench.state.settings);
}

constexpr auto kStart = &OptionMenus::mnuStartOnLoad;
constexpr auto kNormal = &OptionMenus::mnmax;

INSTANTIATE_TEST_SUITE_P(
    All, OptionPaths,
    ::testing::Values(
        OptionPath{"check continually", false, true, kStart, {}, true, true, 0, false},
        OptionPath{"uncheck continually, shown at start", true, true, kStart, {}, false, true, 0, false},
        OptionPath{"uncheck continually, hidden, no", true, false, kStart, {Answer::no}, true, false, 1, false},
        OptionPath{"uncheck continually, dismissed", true, false, kStart, {Answer::dismissed}, true, false, 0, false},
        OptionPath{"uncheck continually, hidden, yes", true, false, kStart, {Answer::yes}, false, true, 0, true},
        OptionPath{"check normal", true, false, kNormal, {}, true, true, 0, true},
        OptionPath{"uncheck normal, now yes", true, true, kNormal, {Answer::yes}, true, false, 0, false},
        OptionPath{"uncheck normal, now no", true, true, kNormal, {Answer::no}, true, false, 0, false},
        OptionPath{"uncheck normal, dismissed", false, true, kNormal, {Answer::dismissed}, false, true, 0, false},
        OptionPath{"uncheck normal, idle, no", false, true, kNormal, {Answer::no}, false, true, 1, false},
        OptionPath{
            "uncheck normal, idle, yes, no", false, true, kNormal, {Answer::yes, Answer::no}, true, false, 0, false},
        OptionPath{"a fresh profile checks normal", false, false, kNormal, {}, false, true, 0, true}));

TEST_F(OptionMenusTest, AQuestionThatStandsIsShownAgain) {
    const std::function<void(Engine&)> entries[] = {[](Engine& engine) { engine.optionMenus.mnOW(); },
                                                    [](Engine& engine) { engine.logMenus.turnOffLoggingChosen(); },
                                                    [](Engine& engine) { engine.backupMenus.mnBackup(); }};
    for (const auto& choose : entries) {
        choose(bench.engine);
        bench.settle();
        const std::size_t asked = bench.boxes.asked.size();
        choose(bench.engine);
        bench.settle();
        EXPECT_EQ(bench.boxes.asked.size(), asked);
        EXPECT_EQ(std::exchange(bench.boxes.shownAgain, 0), 1);
    }
}

TEST_F(OptionMenusTest, TheStartUpEntryWaitsForThePass) {
    bench.engine.optionMenus.mnAddtoStartup();
    EXPECT_EQ(bench.window.entry, StartupEntry::State::works);
    EXPECT_EQ(bench.boxes.informed.back().text,
              "ZEP Now Added to Start UP.  On the next boot ZEP will be take affect.");
    bench.state.PassInProgress = true;
    bench.engine.optionMenus.mnuRemoveFromStartup();
    EXPECT_EQ(bench.entry.present, StartupEntry::State::works);
    EXPECT_EQ(bench.boxes.informed.back().text.rfind("Please confirm file change notification", 0), 0U);
    bench.state.PassInProgress = false;
    bench.engine.optionMenus.mnuRemoveFromStartup();
    EXPECT_EQ(bench.window.entry, StartupEntry::State::none);
    EXPECT_EQ(bench.boxes.informed.back().text, "ZEP is Now Removed Start UP. ");
    bench.entry.present = StartupEntry::State::works;
    bench.engine.optionMenus.startupMenuOpens();
    EXPECT_EQ(bench.window.entry, StartupEntry::State::works) << "the desktop has brought it back";
}

}  // namespace
}  // namespace vantrell::test
