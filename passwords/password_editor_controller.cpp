// SPDX-License-Identifier: MIT
#include "passwords/password_editor_controller.h"

#include <algorithm>
#include <utility>

#include "passwords/ascii_password.h"
#include "platform/password_key.h"

namespace vantrell {

namespace {

constexpr char kQuestionTitle[] = "Active Password";
constexpr char kSaveInactive[] = "This password is not the active password is this OK?";
constexpr char kDeleteActive[] = "This password is the active password  are you sure you want to delete this password?";
constexpr char kOutsideAscii[] =
    "The password holds characters outside ASCII (such as accented letters). Files cannot be encrypted with it. Please "
    "choose another one.";

std::string noteOn(const std::string& password) {
    if (!isAsciiPassword(password)) return "Characters outside ASCII cannot be used.";
    if (password.size() > kCipherKeyBytes) return "Only the first 32 characters count.";
    return {};
}

}  // namespace

PasswordEditorController::PasswordEditorController(PasswordStore& store, ActivePassword& password,
                                                   PasswordWindow& window, MessageBoxes& boxes, RunQueue& queue)
    : store_(store),
      password_(password),
      window_(window),
      boxes_(boxes),
      buttons_(window),
      settling_(queue),
      acting_(queue),
      closing_(queue) {}

PasswordEditorController::~PasswordEditorController() {
    dropWork();
    store_.detachEditor(*this);
}

// Opening and closing

void PasswordEditorController::open() {
    if (!isLoaded_) load();
    window_.showWindow();
}

void PasswordEditorController::load() {
    closing_.abort();
    dropWork();
    isLoaded_ = true;
    isListed_ = false;
    listed_.clear();
    restoreList();
    setText({});
    buttons_.reset();
    window_.focusPassword();
    store_.attachEditor(*this);
    startAction(fillAtOpening());
}

Task<PasswordEditorController::Outcome> PasswordEditorController::fillAtOpening() {
    if (co_await store_.openPasswordStore()) listArrived();
    co_return Outcome::done;
}

void PasswordEditorController::leave(Leaving how) {
    if (!isLoaded_) return;
    if (acting_.isIdle() && how == Leaving::close) return closeSoon();
    if (leaving_ != Leaving::exit) leaving_ = how;
    if (acting_.isIdle()) return startAction(nothing());
    if (question_) boxes_.withdraw(*question_);
}

void PasswordEditorController::unload() {
    isLoaded_ = false;
    closing_.start(closeLater());
}

void PasswordEditorController::closeSoon() {
    settling_.abort();
    store_.detachEditor(*this);
    unload();
}

// In a turn of its own, since it ends the very tasks in which closing is asked for.
Task<void> PasswordEditorController::closeLater() {
    dropWork();
    window_.closeWindow();
    co_return;
}

void PasswordEditorController::abort() {
    closing_.abort();
    dropWork();
    store_.detachEditor(*this);
    isLoaded_ = false;
    window_.closeWindow();
}

void PasswordEditorController::dropWork() {
    settling_.abort();
    acting_.abort();
    leaving_ = Leaving::no;
    unsettled_ = {};
    entry_.reset();
    question_.reset();
}

// What the store is given and gives

std::string PasswordEditorController::enteredPassword() const {
    return entry_ ? entry_->password : window_.enteredPassword();
}

bool PasswordEditorController::activeChoice() const { return entry_ ? entry_->active : window_.isActiveSet(); }

void PasswordEditorController::addRow(const std::string& password, const std::string& activeText) {
    arriving_.push_back({password, activeText});
}

void PasswordEditorController::showAddButton() {
    buttons_.showAddButton();
    buttons_.apply();
}

void PasswordEditorController::listArrived() {
    isListed_ = true;
    listed_ = arriving_;
    restoreList();
}

void PasswordEditorController::restoreList() {
    shown_ = listed_;
    window_.showRows(shown_);
}

void PasswordEditorController::removeSelectedRow() {
    const auto row = window_.selectedRow();
    if (!row || *row >= shown_.size()) return;
    shown_.erase(shown_.begin() + static_cast<std::ptrdiff_t>(*row));
    window_.showRows(shown_);
}

void PasswordEditorController::removeRowOf(const std::string& password) {
    const auto row =
        std::find_if(listed_.begin(), listed_.end(), [&](const PasswordRow& one) { return one.password == password; });
    if (row != listed_.end()) listed_.erase(row);
    restoreList();
}

// The text, the list and the buttons

void PasswordEditorController::setText(const std::string& text) {
    window_.setEnteredPassword(text);
    window_.setNote(noteOn(text));
}

void PasswordEditorController::passwordEdited() {
    if (!isLoaded_) return;
    window_.setNote(noteOn(window_.enteredPassword()));
    unsettled_ = Unsettled{.find = true};
    startSettling();
}

// A click that comes while the table is still being read counts as one that comes right after.
void PasswordEditorController::activeClicked() {
    if (unsettled_.find || unsettled_.click) {
        unsettled_.ticked = window_.isActiveSet();
    } else {
        buttons_.activeChanged();
    }
}

void PasswordEditorController::listClicked() {
    if (!isLoaded_) return;
    unsettled_.click = true;
    unsettled_.active.reset();
    unsettled_.ticked.reset();
    if (const auto row = window_.selectedRow(); row && *row < shown_.size()) {
        const PasswordRow& selected = shown_[*row];
        unsettled_.find = unsettled_.find || window_.enteredPassword() != selected.password;
        unsettled_.active = selected.activeText == "True";
        setText(selected.password);
    }
    startSettling();
}

void PasswordEditorController::startSettling() {
    settling_.abort();
    settling_.start(settleLater());
}

Task<void> PasswordEditorController::settleLater() {
    // A table that could not be read was reported; the next action tries again before it begins.
    static_cast<void>(co_await settle());
}

Task<bool> PasswordEditorController::settle() {
    const bool isKnown = !unsettled_.find || co_await findRecord();
    if (unsettled_.click) applyClick(unsettled_.active);
    if (unsettled_.ticked) buttons_.operatorSetsActive(*unsettled_.ticked);
    unsettled_ = {};
    unsettled_.find = !isKnown;
    co_return isKnown;
}

void PasswordEditorController::applyClick(std::optional<bool> active) {
    if (active) buttons_.setActiveBox(*active);
    buttons_.showActiveCheck();
    buttons_.showEditButtons();
    buttons_.apply();
}

Task<bool> PasswordEditorController::findRecord() {
    const auto records = co_await store_.readRecords();
    if (!records) co_return false;
    if (!isListed_) {
        arriving_.clear();
        for (const PasswordRecord& record : *records) addRow(record.Password, record.Active ? "True" : "False");
        listArrived();
        if (records->empty()) showAddButton();
    }
    buttons_.findRecord(*records, window_.enteredPassword());
    co_return true;
}

Task<void> PasswordEditorController::emptyText() {
    if (window_.enteredPassword().empty()) co_return;
    setText({});
    unsettled_ = Unsettled{.find = true};
    static_cast<void>(co_await settle());
}

// What is typed while the file is in use by another program stays.
bool PasswordEditorController::isEntryStanding() const {
    const std::string text = window_.enteredPassword();
    return text.empty() || text == entry_->password;
}

// The buttons' actions

void PasswordEditorController::startAction(Task<Outcome> action) {
    if (!isLoaded_ || !acting_.isIdle()) return;
    settling_.abort();
    entry_ = Entry{window_.enteredPassword(), window_.isActiveSet()};
    acting_.start(act(std::move(action)));
}

Task<void> PasswordEditorController::act(Task<Outcome> action) {
    const Outcome outcome = co_await std::move(action);
    entry_.reset();
    const Leaving leaving = std::exchange(leaving_, Leaving::no);
    if (!isLoaded_ || leaving == Leaving::no || outcome == Outcome::failed) co_return;
    if (leaving == Leaving::exit) co_await findCurrentPassword();
    leaving_ = Leaving::no;
    if (isLoaded_) closeSoon();
}

// The buttons that were clicked may belong to an earlier text: first they follow the one that stands there.
Task<PasswordEditorController::Outcome> PasswordEditorController::onEntry(Task<Outcome> action) {
    if (!co_await settle()) co_return Outcome::failed;
    if (window_.enteredPassword() != entry_->password) co_return Outcome::refused;
    entry_->active = window_.isActiveSet();
    co_return co_await std::move(action);
}

Task<PasswordEditorController::Outcome> PasswordEditorController::add() {
    if (entry_->password.empty()) co_return tell(kApplicationTitle, "A password must be entered!", Outcome::refused);
    if (!isAsciiPassword(entry_->password)) co_return tell(kApplicationTitle, kOutsideAscii, Outcome::failed);
    if (!entry_->active && !co_await isConfirmed(kSaveInactive, false)) {
        window_.focusActive();
        co_return Outcome::refused;
    }
    co_return co_await saveEntry();
}

Task<PasswordEditorController::Outcome> PasswordEditorController::saveEntry() {
    if (!co_await store_.savePassword()) co_return Outcome::failed;
    listArrived();
    if (isEntryStanding()) {
        co_await emptyText();
        buttons_.setActiveBox(false);
        buttons_.hideActiveCheck();
        buttons_.hideEditButtons();
        buttons_.apply();
        window_.focusPassword();
    }
    co_await findCurrentPassword();
    co_return Outcome::done;
}

Task<PasswordEditorController::Outcome> PasswordEditorController::edit() {
    removeSelectedRow();
    const Outcome outcome = co_await add();
    if (outcome == Outcome::failed) {
        restoreList();
        co_return outcome;
    }
    if (isEntryStanding()) {
        co_await emptyText();
        buttons_.ignoreActiveClick();
        buttons_.hideActiveCheck();
        buttons_.hideEditButtons();
        buttons_.apply();
    }
    co_await findCurrentPassword();
    co_return outcome;
}

Task<PasswordEditorController::Outcome> PasswordEditorController::erase() {
    if (entry_->active && !co_await isConfirmed(kDeleteActive, true)) {
        window_.focusPassword();
        co_return Outcome::refused;
    }
    removeSelectedRow();
    if (!co_await store_.deleteRecord()) {
        restoreList();
        co_return Outcome::failed;
    }
    removeRowOf(entry_->password);
    if (co_await store_.reInitializeRecordset()) listArrived();
    if (isEntryStanding()) {
        buttons_.hideActiveCheck();
        buttons_.hideEditButtons();
        co_await emptyText();
        if (listed_.empty()) buttons_.showAddButton();
        buttons_.apply();
        window_.focusPassword();
    }
    co_return Outcome::done;
}

Task<void> PasswordEditorController::findCurrentPassword() {
    const std::optional<std::string> found = co_await store_.findCurrentPassword();
    if (found) {
        password_.set(*found);
        listArrived();
    } else {
        restoreList();
    }
}

// Boxes

Task<bool> PasswordEditorController::isConfirmed(std::string text, bool defaultIsNo) {
    Pending<Answer> question = boxes_.ask({kQuestionTitle, std::move(text), Buttons::yesNo, defaultIsNo});
    question_ = question.ticket();
    const Answer answer = co_await question;
    question_.reset();
    co_return answer == Answer::yes;
}

PasswordEditorController::Outcome PasswordEditorController::tell(std::string title, std::string text, Outcome outcome) {
    boxes_.inform({std::move(title), std::move(text)});
    window_.focusPassword();
    return outcome;
}

}  // namespace vantrell
