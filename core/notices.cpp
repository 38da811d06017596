// SPDX-License-Identifier: MIT
#include "core/notices.h"

#include <algorithm>

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

Notices::Notices(Notifier& notifier, const Clock& clock, MainWindow& window, WindowPlace& place)
    : notifier_(notifier), clock_(clock), window_(window), place_(place) {}

void Notices::passEnded(Trouble trouble, const std::string& words, std::uint64_t rejected) {
    // Rejected files are worth telling until the operator has looked: a later pass without rejected files does not
    // change that.
    if (trouble == Trouble::none && (rejected > 0 || trouble_ == Trouble::filesRejected))
        trouble = Trouble::filesRejected;
    if (trouble == Trouble::none) return operatorActed();
    const bool isNew = trouble != trouble_ || words != words_;
    if (isNew) settle();
    trouble_ = trouble;
    words_ = words;
    rejected_ += rejected;
    if (isNew) return tell();
    tick();
}

void Notices::operatorActed() {
    if (trouble_ != Trouble::none) notifier_.withdraw();
    settle();
}

void Notices::settle() {
    trouble_ = Trouble::none;
    words_.clear();
    rejected_ = rejectedTold_ = 0;
    pause_ = kFirstPause;
}

void Notices::tick() {
    const bool hasNews = trouble_ != Trouble::filesRejected || rejected_ > rejectedTold_;
    if (trouble_ == Trouble::none || !hasNews) return;
    const auto since = clock_.now() - told_;
    // Without this, a clock that was set back would stop all notifications until it has caught up.
    if (since >= pause_ || since < std::chrono::hours(0)) {
        pause_ = std::min(pause_ * 2, kLongestPause);
        tell();
    }
}

void Notices::tell() {
    told_ = clock_.now();
    rejectedTold_ = rejected_;
    std::string text = trouble_ == Trouble::filesRejected ? rejectedText(rejected_) : displayText(words_);
    notifier_.show(kApplicationTitle, text);
}

void Notices::questionOpened(const Box& box) {
    if (!place_.isHidden() && !window_.isMinimized()) return;
    place_.show();
    questionIsTold_ = true;
    notifier_.show(kApplicationTitle, box.text);
}

void Notices::questionClosed() {
    if (!questionIsTold_) return;
    questionIsTold_ = false;
    notifier_.withdraw();
}

}  // namespace vantrell
