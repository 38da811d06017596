// SPDX-License-Identifier: MIT
#include "core/notices.h"

#include <algorithm>
#include <utility>

#include "base/display_text.h"

namespace vantrell {

namespace {

constexpr std::chrono::hours kFirstPause{1};
constexpr std::chrono::hours kLongestPause{24};

std::string rejectedText(std::uint64_t count) {
    return count == 1 ? "1 file could not be encrypted and is in the rejected folder."
                      : std::to_string(count) + " files could not be encrypted and are in the rejected folder.";
}

}  // namespace

Notices::Notices(Notifier& notifier, const Clock& clock, MainWindow& window, WindowPlace& place,
                 const MessageBoxes& boxes)
    : notifier_(notifier), clock_(clock), window_(window), place_(place), boxes_(boxes) {
    notifier_.onClicked([this] { place_.show(); });
}

void Notices::Reminder::begin(Clock::TimePoint now) {
    told_ = now;
    pause_ = kFirstPause;
}

bool Notices::Reminder::takeDue(Clock::TimePoint now) {
    const auto since = now - told_;
    // A clock that was set back would otherwise stop all notifications until it has caught up.
    if (since < pause_ && since >= std::chrono::hours(0)) return false;
    pause_ = std::min(pause_ * 2, kLongestPause);
    told_ = now;
    return true;
}

void Notices::passEnded(Trouble trouble, const std::string& words, std::uint64_t rejected, Then then) {
    // Rejected files are worth telling until the operator has looked: a later pass without rejected files does not
    // change that.
    if (trouble == Trouble::none && (rejected > 0 || trouble_ == Trouble::filesRejected))
        trouble = Trouble::filesRejected;
    if (trouble == Trouble::none) return operatorActed();
    const bool isNew = trouble != trouble_ || words != words_;
    if (isNew) settle();
    trouble_ = trouble;
    words_ = words;
    then_ = then;
    rejected_ += rejected;
    if (!isNew) return tick();
    reminder_.begin(clock_.now());
    tell();
}

void Notices::operatorActed() {
    if (trouble_ != Trouble::none) notifier_.withdraw();
    settle();
}

void Notices::settle() {
    trouble_ = Trouble::none;
    words_.clear();
    rejected_ = rejectedTold_ = 0;
}

void Notices::tick() {
    if (!question_.empty()) {
        if (questionReminder_.takeDue(clock_.now())) tellOfQuestion();
        return;
    }
    const bool hasNews = trouble_ != Trouble::filesRejected || rejected_ > rejectedTold_;
    if (trouble_ != Trouble::none && hasNews && reminder_.takeDue(clock_.now())) tell();
}

void Notices::tell() {
    rejectedTold_ = rejected_;
    if (!words_.empty() && boxes_.isBeingRead(words_)) return;
    std::string text = trouble_ == Trouble::filesRejected ? rejectedText(rejected_) : displayText(words_);
    const bool hasStopped = then_ == Then::hasStopped && trouble_ != Trouble::filesRejected;
    if (hasStopped && text.find("has stopped") == std::string::npos) text += " Processing has stopped.";
    notifier_.show(kApplicationTitle, text, hasStopped ? Notifier::Urgency::critical : Notifier::Urgency::normal);
}

void Notices::questionOpened(const Box& box) {
    question_ = box.text;
    questionReminder_.begin(clock_.now());
    if (!place_.isHidden() && !window_.isMinimized()) return;
    place_.show();
    tellOfQuestion();
}

void Notices::tellOfQuestion() {
    if (boxes_.isBeingRead(question_)) return;
    questionIsTold_ = true;
    notifier_.show(kApplicationTitle, question_, Notifier::Urgency::critical);
}

void Notices::questionClosed() {
    question_.clear();
    if (!std::exchange(questionIsTold_, false)) return;
    notifier_.withdraw();
}

}  // namespace vantrell
