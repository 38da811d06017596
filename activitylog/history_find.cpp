// SPDX-License-Identifier: MIT
#include "activitylog/history_find.h"

#include <algorithm>

#include "activitylog/history_lines.h"

namespace vantrell {

namespace {

std::string inOneCase(std::string text) {
    for (char& byte : text)
        if (byte >= 'A' && byte <= 'Z') byte = static_cast<char>(byte - 'A' + 'a');
    return text;
}

}  // namespace

HistoryFind::HistoryFind(EventLoop& loop, const HistoryLines& lines, HistoryFindView& view)
    : loop_(loop), lines_(lines), view_(view), tasks_(loop.queue()) {}

void HistoryFind::find(const std::string& text, std::size_t from) {
    clear();
    text_ = inOneCase(text);
    from_ = from;
    state_.isSearching = !text_.empty();
    linesJoined();
    report();
}

void HistoryFind::clear() {
    tasks_.abort();
    text_.clear();
    matches_.clear();
    searched_ = 0;
    state_ = {};
}

void HistoryFind::linesJoined() {
    if (!state_.isSearching || state_.isUnderWay || searched_ == lines_.size()) return;
    state_.isUnderWay = true;
    tasks_.start(search());
}

Task<void> HistoryFind::search() {
    while (searched_ < lines_.size()) {
        searchBlock();
        co_await loop_.breathe();
    }
    state_.isUnderWay = false;
    if (state_.position == 0 && !matches_.empty()) show(0);
    report();
}

void HistoryFind::searchBlock() {
    const std::size_t known = matches_.size();
    for (std::string& line : lines_.linesFrom(searched_)) {
        if (inOneCase(std::move(line)).find(text_) != std::string::npos) matches_.push_back(searched_);
        ++searched_;
    }
    if (matches_.size() == known) return;
    state_.matches = matches_.size();
    if (state_.position != 0 || matches_.back() < from_) return report();
    const auto first = std::lower_bound(matches_.begin(), matches_.end(), from_);
    show(static_cast<std::size_t>(first - matches_.begin()));
}

void HistoryFind::step(int direction) {
    if (matches_.empty()) return;
    const std::size_t count = matches_.size();
    const std::size_t shown = state_.position == 0 ? (direction > 0 ? count - 1 : 0) : state_.position - 1;
    show(direction > 0 ? (shown + 1) % count : (shown + count - 1) % count);
}

void HistoryFind::show(std::size_t match) {
    state_.position = match + 1;
    view_.showMatch(matches_[match]);
    report();
}

void HistoryFind::report() { view_.showFindState(state_); }

}  // namespace vantrell
