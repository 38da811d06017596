// SPDX-License-Identifier: MIT
#include "passwords/editor_fixture.h"

namespace vantrell::test {
namespace {

using EditorTest = EditorFixture;

// The state for a text

TEST_F(EditorTest, StaysReadyForANewPasswordWhileTheTableIsEmpty) {
    open();
    for (const char* text : {"", "x", ""}) {
        type(text);
        EXPECT_EQ(window.shown, kNewPassword);
    }
    EXPECT_TRUE(window.isOpen);
    EXPECT_TRUE(boxes.informed.empty());
}

TEST_F(EditorTest, ShowsTheStateThatTheLastRowLeaves) {
    openWithThree();
    EXPECT_EQ(window.rows, kThreeListed);
    EXPECT_EQ(window.shown, kNothing);
    fill("UPDATE EncDecPasswords SET Active = 1 WHERE Password = 'last'");
    const struct {
        const char* text;
        const char* shown;
        bool active;
    } steps[] = {{"l", kNewPassword, false},      {"last", kStoredPassword, true},
                 {"last ", kNewPassword, false},  {"LAST", kNewPassword, false},
                 {"one", kNewPassword, false},    {"Two", kNewPassword, false},
                 {"last", kStoredPassword, true}, {"", kNothing, false}};
    for (const auto& step : steps) {
        type(step.text);
        EXPECT_EQ(window.shown, step.shown) << step.text;
        EXPECT_EQ(window.active, step.active) << step.text;
    }
}

TEST_F(EditorTest, FirstClickAfterAChangeThatWasNoneIsNotRemembered) {
    openWithThree();
    type("new");  // clears a box that is clear
    tick(true);
    type("new p");
    EXPECT_FALSE(window.active);
    for (const bool set : {true, false, true}) tick(set);
    type("new pass");
    EXPECT_TRUE(window.active);
}

TEST_F(EditorTest, ClickInTheListTakesAnyRow) {
    openWithThree();
    for (const auto& [row, text, active] : {std::tuple(1u, "Two", true), std::tuple(0u, "one", false)}) {
        choose(row);
        EXPECT_EQ(window.text, text);
        EXPECT_EQ(window.active, active);
        EXPECT_EQ(window.shown, kStoredPassword);
    }
    type("");
    choose(std::nullopt);
    EXPECT_EQ(window.shown, kStoredPassword) << "also beside the rows";
    EXPECT_EQ(window.text, "");
}

TEST_F(EditorTest, RefusesWhatCannotBeUsedAndNotesWhatIsNot) {
    open();
    press(kAdd);
    EXPECT_EQ(theBox().text, "A password must be entered!");
    EXPECT_EQ(theBox().title, "Vantrell");
    EXPECT_EQ(window.focus, "txtpassword");
    type(std::string(32, 'x'));
    EXPECT_EQ(window.note, "");
    type(std::string(33, 'x'));
    EXPECT_NE(window.note.find("first 32"), std::string::npos);
    type("gr\xC3\xBCn");
    EXPECT_NE(window.note.find("ASCII"), std::string::npos);
    press(kAdd);
    EXPECT_NE(boxes.informed.back().text.find("ASCII"), std::string::npos);
    EXPECT_EQ(window.text, "gr\xC3\xBCn");
    EXPECT_TRUE(boxes.asked.empty());
    EXPECT_TRUE(stored().empty());
}

// Add, Edit, Delete

TEST_F(EditorTest, AddsAnActivePasswordAtOnce) {
    openWithThree();
    type("new");
    tick(true);
    press(kAdd);
    EXPECT_EQ(stored(), (Strings{"one=0", "Two=0", "last=0", "new=1"}));
    EXPECT_EQ(window.rows, (Strings{"one=False", "Two=False", "last=False", "new=True"}));
    EXPECT_EQ(state.ActivePassword, "new");
    expectEmptied();
    EXPECT_FALSE(window.active);
    EXPECT_TRUE(boxes.asked.empty());
}

TEST_F(EditorTest, AsksBeforeAnInactivePasswordIsAdded) {
    openWithThree();
    type("new");
    boxes.answerNext(Answer::no);
    press(kAdd);
    expectQuestion("This password is not the active password is this OK?");
    EXPECT_EQ(window.focus, "chkActive");
    EXPECT_EQ(window.text, "new");
    EXPECT_EQ(stored(), kThree);
    press(kAdd);
    type("n\xC3\xA9w");  // belongs to the next save
    tick(true);
    boxes.answerOpen(Answer::yes);
    turn();
    EXPECT_EQ(stored(), (Strings{"one=0", "Two=1", "last=0", "new=0"}));
    EXPECT_EQ(state.ActivePassword, "Two");
    EXPECT_EQ(window.text, "n\xC3\xA9w");
    EXPECT_EQ(window.shown, kNewPassword);
}

TEST_F(EditorTest, EditChangesTheFlagAlone) {
    openWithThree();
    choose(1);
    tick(false);
    boxes.answerNext(Answer::no);
    press(kEdit);
    EXPECT_EQ(stored(), kThree);
    EXPECT_EQ(window.rows, kThreeListed);
    expectEmptied();
    choose(0);
    tick(true);
    press(kEdit);
    EXPECT_EQ(stored(), (Strings{"one=1", "Two=0", "last=0"}));
    EXPECT_EQ(window.rows, (Strings{"one=True", "Two=False", "last=False"}));
    EXPECT_EQ(state.ActivePassword, "one");
    expectEmptied();
}

TEST_F(EditorTest, EditOfAChangedTextStoresAFurtherPassword) {
    openWithThree();
    choose(1);
    window.text = "Two!";  // key, box and button before the table is read
    controller.passwordEdited();
    tick(false);
    tick(true);
    press(kEdit);
    EXPECT_EQ(stored(), (Strings{"one=0", "Two=0", "last=0", "Two!=1"}));
}

TEST_F(EditorTest, AsksBeforeTheActivePasswordIsDeleted) {
    openWithThree();
    state.ActivePassword = "Two";
    choose(1);
    boxes.answerNext(Answer::no);
    press(kDelete);
    expectQuestion("This password is the active password  are you sure you want to delete this password?");
    EXPECT_EQ(window.focus, "txtpassword");
    EXPECT_EQ(stored(), kThree);
    boxes.answerNext(Answer::yes);
    press(kDelete);
    EXPECT_EQ(stored(), (Strings{"one=0", "last=0"}));
    EXPECT_EQ(window.rows, (Strings{"one=False", "last=False"}));
    expectEmptied();
    EXPECT_EQ(state.ActivePassword, "Two") << "until the next lookup";
    press(kExit);
    EXPECT_EQ(state.ActivePassword, "");
    EXPECT_FALSE(window.isOpen);
}

TEST_F(EditorTest, DeletingTheLastPasswordLeavesTheNewPasswordState) {
    fill("INSERT INTO EncDecPasswords VALUES ('only', 0)");
    open();
    choose(0);
    press(kDelete);
    EXPECT_EQ(theBox().text, "There is not any passwords defined.");
    EXPECT_TRUE(window.rows.empty());
    EXPECT_EQ(window.text, "");
    EXPECT_EQ(window.shown, kNewPassword);
}

// Leaving

TEST_F(EditorTest, CloseBoxLeavesTheActivePasswordAndNothingSurvives) {
    openWithThree();
    choose(1);
    press(kCloseBox);
    EXPECT_FALSE(window.isOpen);
    EXPECT_EQ(state.ActivePassword, "");
    EXPECT_EQ(store.editor(), nullptr);
    open();
    EXPECT_EQ(window.text, "");
    EXPECT_FALSE(window.active);
    EXPECT_EQ(window.shown, kNothing);
    EXPECT_EQ(window.rows, kThreeListed);
}

TEST_F(EditorTest, EveryWayOutTakesAnOpenQuestionBack) {
    fill("INSERT INTO EncDecPasswords VALUES ('Two', 1)");
    const std::function<void()> ways[] = {[this] { press(kExit); }, [this] { press(kCloseBox); },
                                          [this] { EXPECT_EQ(lookUp(), "Two"); }, [this] { controller.closeNow(); }};
    for (const auto& leave : ways) {
        open();
        choose(0);
        press(kDelete);
        ASSERT_EQ(boxes.openIds.size(), 1u);
        leave();
        turn();
        EXPECT_TRUE(boxes.openIds.empty());
        EXPECT_FALSE(window.isOpen);
        EXPECT_FALSE(store.isBusy());
        EXPECT_EQ(store.editor(), nullptr);
        EXPECT_EQ(stored(), Strings{"Two=1"});
    }
}

}  // namespace
}  // namespace vantrell::test
