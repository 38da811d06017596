// SPDX-License-Identifier: MIT
#include <optional>

#include "passwords/password_fixture.h"
#include "support/file_size_limit.h"

namespace vantrell::test {
namespace {

constexpr char kNothing[] = "";
constexpr char kNewPassword[] = "Add Active ";
constexpr char kStoredPassword[] = "Edit Delete Active ";
const Strings kThree{"one=0", "Two=1", "last=0"};

using Button = void (PasswordEditorController::*)();
constexpr Button kAdd = &PasswordEditorController::addPressed;
constexpr Button kEdit = &PasswordEditorController::editPressed;
constexpr Button kDelete = &PasswordEditorController::deletePressed;
constexpr Button kExit = &PasswordEditorController::exitPressed;
constexpr Button kCloseBox = &PasswordEditorController::closeBoxPressed;

/// The editor on a real file.
class EditorTest : public PasswordFixture {
protected:
    void openWithThree() {
        fill("INSERT INTO EncDecPasswords VALUES ('one', 0), ('Two', 1), ('last', 0)");
        open();
    }
    void open() {
        controller.open();
        loop.settle();
    }
    void type(const std::string& text) {
        window.text = text;
        controller.passwordEdited();
        loop.settle();
    }
    void tick(bool set) {
        if (window.active == set) return;
        window.active = set;
        controller.activeClicked();
    }
    void choose(std::optional<std::size_t> row) {
        window.selected = row;
        controller.listClicked();
        loop.settle();
    }
    void press(Button button) {
        (controller.*button)();
        loop.settle();
    }

    void expectQuestion(const std::string& text) {
        ASSERT_EQ(boxes.asked.size(), 1u);
        EXPECT_EQ(boxes.asked[0].title + ": " + boxes.asked[0].text, "Active Password: " + text);
        EXPECT_EQ(boxes.asked[0].buttons, Buttons::yesNo);
    }
    void expectTable(const Strings& records) {
        EXPECT_EQ(stored(), records);
        EXPECT_EQ(window.rows, records);
    }
    void expectEmptied() {
        EXPECT_EQ(window.text, "");
        EXPECT_EQ(window.shown, kNothing);
    }
};

TEST_F(EditorTest, ShowsTheStateThatTheLastRowLeaves) {
    openWithThree();
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

TEST_F(EditorTest, RefusesWhatIsNoKeyAndSaysWhatIsCutOff) {
    open();
    press(kAdd);
    EXPECT_EQ(theBox().text, "A password must be entered!");
    boxes.informed.clear();
    type("sch\xC3\xB6n");
    EXPECT_EQ(window.note, "Characters outside ASCII cannot be used.");
    press(kAdd);
    EXPECT_NE(theBox().text.find("holds characters outside ASCII"), std::string::npos);
    type(std::string(32, 'x'));
    EXPECT_EQ(window.note, "");
    type(std::string(33, 'x'));
    EXPECT_EQ(window.note, "Only the first 32 characters count.");
    EXPECT_EQ(stored(), Strings{});
}

TEST_F(EditorTest, AddsAnActivePasswordAtOnceAndAsksBeforeAnInactiveOne) {
    openWithThree();
    type("new");
    boxes.answerNext(Answer::no);
    press(kAdd);
    expectQuestion("This password is not the active password is this OK?");
    EXPECT_EQ(window.focus, "chkActive");
    EXPECT_EQ(window.text, "new");
    expectTable(kThree);
    press(kAdd);
    type("n\xC3\xA9w");  // belongs to the next save
    tick(true);
    boxes.answerOpen(Answer::yes);
    loop.settle();
    expectTable({"one=0", "Two=1", "last=0", "new=0"});
    EXPECT_EQ(activePassword.known(), "Two");
    EXPECT_EQ(window.text, "n\xC3\xA9w");
    type("next");
    tick(true);
    press(kAdd);
    expectTable({"one=0", "Two=0", "last=0", "new=0", "next=1"});
    EXPECT_EQ(activePassword.known(), "next");
    expectEmptied();
}

TEST_F(EditorTest, EditChangesTheFlagAlone) {
    openWithThree();
    choose(1);
    tick(false);
    boxes.answerNext(Answer::no);
    press(kEdit);
    expectTable(kThree);
    expectEmptied();
    choose(0);
    tick(true);
    press(kEdit);
    expectTable({"one=1", "Two=0", "last=0"});
    EXPECT_EQ(activePassword.known(), "one");
    expectEmptied();
}

TEST_F(EditorTest, AsksBeforeTheActivePasswordIsDeleted) {
    openWithThree();
    activePassword.set("Two");
    choose(1);
    boxes.answerNext(Answer::no);
    press(kDelete);
    expectQuestion("This password is the active password  are you sure you want to delete this password?");
    EXPECT_EQ(window.focus, "txtpassword");
    expectTable(kThree);
    boxes.answerNext(Answer::yes);
    press(kDelete);
    expectTable({"one=0", "last=0"});
    expectEmptied();
    EXPECT_EQ(activePassword.known(), "Two") << "until the next lookup";
    for (int left = 2; left > 0; --left) {
        EXPECT_TRUE(boxes.informed.empty());
        choose(0);
        press(kDelete);
    }
    EXPECT_EQ(theBox().text, "There is not any passwords defined.");
    expectTable({});
    EXPECT_EQ(window.shown, kNewPassword);
    press(kExit);
    EXPECT_EQ(activePassword.known(), "");
}

TEST_F(EditorTest, EveryWayOutTakesAnOpenQuestionBackAndLeavesNothing) {
    fill("INSERT INTO EncDecPasswords VALUES ('Two', 1)");
    const std::function<void()> ways[] = {[this] { press(kExit); }, [this] { press(kCloseBox); },
                                          [this] { controller.abort(); }};
    for (const auto& leave : ways) {
        open();
        expectEmptied();
        EXPECT_FALSE(window.active);
        choose(0);
        press(kDelete);
        ASSERT_EQ(boxes.openIds.size(), 1u);
        leave();
        loop.settle();
        EXPECT_TRUE(boxes.openIds.empty());
        EXPECT_FALSE(window.isOpen);
        EXPECT_FALSE(store.isBusy());
        EXPECT_EQ(store.editor(), nullptr);
        expectTable({"Two=1"});
    }
}

TEST_F(EditorTest, ALookupClosesItWhenNobodyUsesItAndLeavesItAloneOtherwise) {
    fill("INSERT INTO EncDecPasswords VALUES ('Two', 1)");
    open();
    EXPECT_EQ(lookUp(), "Two");
    loop.settle();
    EXPECT_FALSE(window.isOpen);
    open();
    choose(0);
    press(kDelete);
    window.text.clear();  // a question is use enough
    EXPECT_EQ(lookUp(), "Two");
    EXPECT_EQ(boxes.openIds.size(), 1u);
    EXPECT_TRUE(window.isOpen);
    boxes.answerOpen(Answer::no);
    type("typed");
    OtherProgram other(file);
    other.run("BEGIN EXCLUSIVE");
    TaskGroup lookups(loop.queue());
    lookups.start(lookUpOnce());
    loop.settle();
    press(kCloseBox);
    EXPECT_FALSE(window.isOpen) << "it need not wait for the lookup";
    other.run("COMMIT");
    loop.waitUntil([&] { return lookups.isIdle(); });
    EXPECT_EQ(activePassword.known(), "Two");
}

/// A row is chosen, and then the file cannot be written.
class EditorInTrouble : public EditorTest, public testing::WithParamInterface<Button> {
protected:
    EditorInTrouble() {
        openWithThree();
        choose(0);
        tick(GetParam() != kDelete);
    }
    /// As long as anybody tries again.
    void waitLong() {
        loop.waitUntil([] { return false; });
    }
    OtherProgram other{file};
};

INSTANTIATE_TEST_SUITE_P(, EditorInTrouble, testing::Values(kAdd, kEdit, kDelete));

TEST_P(EditorInTrouble, AFileThatIsLockedOrFullStaysAndItIsToldAndWorksAgain) {
    const std::string before = readFile(file);
    for (const bool isFull : {false, true}) {
        std::optional<FileSizeLimit> full;
        isFull ? static_cast<void>(full.emplace(1)) : other.run("BEGIN EXCLUSIVE");
        press(GetParam());
        waitLong();
        full.reset();
        if (!isFull) other.run("COMMIT");
        EXPECT_EQ(boxes.informed.size(), isFull ? 2U : 1U);
        EXPECT_EQ(readFile(file), before);
        expectTable(kThree);
        EXPECT_EQ(window.text, "one");
        EXPECT_TRUE(window.isOpen);
        EXPECT_EQ(activePassword.known(), "");
    }
    press(GetParam());
    EXPECT_NE(stored(), kThree);
    EXPECT_EQ(window.text, "");
}

TEST_P(EditorInTrouble, ExitDuringTheWaitClosesOnlyAfterSuccess) {
    other.run("BEGIN EXCLUSIVE");
    for (const bool isLocked : {true, false}) {
        press(GetParam());
        press(kExit);
        if (!isLocked) other.run("COMMIT");
        waitLong();
        EXPECT_EQ(window.isOpen, isLocked) << "what was entered must not get lost";
    }
    EXPECT_NE(stored(), kThree);
}

}  // namespace
}  // namespace vantrell::test
